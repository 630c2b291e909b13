# ovxml_generate: generated classes for XML Schema documents, made at build time.
#
#   ovxml_generate(TARGET app SCHEMAS order.xsd common.xsd
#                  [NAMESPACE shop] [NAME Shop] [CLASS_PREFIX C] [CLASS_SUFFIX Type]
#                  [OUTPUT_DIR dir])
#
# runs `ovxml generate` on the schemas when they (or a schema they include or import) change,
# adds the generated sources (one header and one source per schema named, plus the class
# factory <NAME>Factory.h/.cpp; NAME defaults to the first schema's name) to TARGET, and puts
# their folder (by default ${CMAKE_CURRENT_BINARY_DIR}/ovxml_generated/<TARGET>) on TARGET's
# include path. TARGET must link OvXmlLib6::OvXmlLib6 itself.
include_guard(GLOBAL)

function(ovxml_generate)
  cmake_parse_arguments(PARSE_ARGV 0 ARG ""
    "TARGET;NAMESPACE;NAME;CLASS_PREFIX;CLASS_SUFFIX;OUTPUT_DIR" "SCHEMAS")
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "ovxml_generate: unknown arguments: ${ARG_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT ARG_TARGET OR NOT TARGET ${ARG_TARGET})
    message(FATAL_ERROR "ovxml_generate: TARGET must name an existing target (got '${ARG_TARGET}')")
  endif()
  if(NOT ARG_SCHEMAS)
    message(FATAL_ERROR "ovxml_generate: no SCHEMAS given for ${ARG_TARGET}")
  endif()
  if(NOT TARGET OvXmlLib6::ovxml)
    message(FATAL_ERROR "ovxml_generate: the ovxml tool is not available (OvXmlLib6::ovxml)")
  endif()
  if(NOT ARG_OUTPUT_DIR)
    set(ARG_OUTPUT_DIR ${CMAKE_CURRENT_BINARY_DIR}/ovxml_generated/${ARG_TARGET})
  endif()

  set(schemas "")
  set(outputs "")
  foreach(schema IN LISTS ARG_SCHEMAS)
    get_filename_component(schema "${schema}" ABSOLUTE BASE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
    if(NOT EXISTS "${schema}")
      message(FATAL_ERROR "ovxml_generate: no schema '${schema}' for ${ARG_TARGET}")
    endif()
    get_filename_component(stem "${schema}" NAME_WLE)
    list(APPEND schemas "${schema}")
    list(APPEND outputs ${ARG_OUTPUT_DIR}/${stem}.h ${ARG_OUTPUT_DIR}/${stem}.cpp)
    if(NOT ARG_NAME)
      set(ARG_NAME ${stem})
    endif()
  endforeach()
  list(APPEND outputs ${ARG_OUTPUT_DIR}/${ARG_NAME}Factory.h ${ARG_OUTPUT_DIR}/${ARG_NAME}Factory.cpp)

  set(options --name ${ARG_NAME})
  foreach(option NAMESPACE CLASS_PREFIX CLASS_SUFFIX)
    if(DEFINED ARG_${option})
      string(TOLOWER ${option} flag)
      string(REPLACE "_" "-" flag ${flag})
      list(APPEND options --${flag} "${ARG_${option}}")
    endif()
  endforeach()

  # The depfile names every schema read, so that a change in an included schema regenerates.
  set(depfile ${ARG_OUTPUT_DIR}/${ARG_NAME}.d)
  add_custom_command(
    OUTPUT ${outputs}
    COMMAND OvXmlLib6::ovxml generate ${options} --depfile ${depfile} -o ${ARG_OUTPUT_DIR} ${schemas}
    DEPENDS ${schemas} OvXmlLib6::ovxml
    DEPFILE ${depfile}
    COMMENT "Generating classes for ${ARG_TARGET} from ${ARG_SCHEMAS}"
    VERBATIM)
  target_sources(${ARG_TARGET} PRIVATE ${outputs})
  target_include_directories(${ARG_TARGET} PUBLIC ${ARG_OUTPUT_DIR})
endfunction()
