// Drives the Java Fast Infoset codec (libfastinfoset-java) for the interoperability test. Run
// with the single-file launcher, so nothing is compiled ahead:
//
//   java -cp /usr/share/java/FastInfoset.jar FiPeer.java JOBS
//
// JOBS holds one job a line, all done in this one JVM:
//   xml2fi IN OUT [OPTION...]  XML -> FI through a namespace-aware SAX parser and
//                        SAXDocumentSerializer; options: utf16 (UTF-16BE literals), index-long
//                        (attribute values and text chunks up to 100,000 characters go into
//                        the tables, not only those up to the codec's default limit)
//   fi2xml IN OUT        FI -> XML through SAXDocumentParser and an identity transform
//   typed PREFIX         writes PREFIX1.fi ... with the serializer's typed calls
// A failed job prints "FAIL <job>: <reason>", leaves no output file, and the others go on; the
// exit status is 1 when any job failed.
import com.sun.xml.fastinfoset.sax.SAXDocumentParser;
import com.sun.xml.fastinfoset.sax.SAXDocumentSerializer;
import java.io.BufferedOutputStream;
import java.io.File;
import java.io.FileInputStream;
import java.io.FileOutputStream;
import java.io.InputStream;
import java.io.OutputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.Arrays;
import java.util.List;
import javax.xml.parsers.SAXParser;
import javax.xml.parsers.SAXParserFactory;
import javax.xml.transform.Transformer;
import javax.xml.transform.TransformerFactory;
import javax.xml.transform.sax.SAXSource;
import javax.xml.transform.stream.StreamResult;
import org.jvnet.fastinfoset.EncodingAlgorithmIndexes;
import org.jvnet.fastinfoset.sax.helpers.EncodingAlgorithmAttributesImpl;
import org.xml.sax.InputSource;
import org.xml.sax.helpers.AttributesImpl;

public class FiPeer {
  public static void main(String[] args) throws Exception {
    List<String> jobs = Files.readAllLines(Paths.get(args[0]), StandardCharsets.UTF_8);
    SAXParserFactory factory = SAXParserFactory.newInstance();
    factory.setNamespaceAware(true);
    TransformerFactory transformers = TransformerFactory.newInstance();
    int failed = 0;
    for (String job : jobs) {
      if (job.isEmpty()) continue;
      String[] w = job.split(" ");
      try {
        switch (w[0]) {
          case "xml2fi":
            List<String> options = Arrays.asList(w).subList(3, w.length);
            toFastInfoset(factory.newSAXParser(), w[1], w[2], options.contains("utf16"),
                options.contains("index-long"));
            break;
          case "fi2xml":
            toXml(transformers.newTransformer(), w[1], w[2]);
            break;
          case "typed":
            writeTyped(w[1]);
            break;
          default:
            throw new IllegalArgumentException("unknown job");
        }
      } catch (Exception e) {
        failed++;
        System.out.println("FAIL " + job + ": " + e);
        if (w.length > 2) new File(w[2]).delete();  // no partial output to compare
      }
    }
    System.exit(failed == 0 ? 0 : 1);
  }

  static void toFastInfoset(SAXParser parser, String in, String out, boolean utf16,
      boolean indexLong) throws Exception {
    SAXDocumentSerializer serializer = new SAXDocumentSerializer();
    if (utf16) serializer.setCharacterEncodingScheme("UTF-16BE");
    if (indexLong) {
      serializer.setMaxAttributeValueSize(100000);
      serializer.setMaxCharacterContentChunkSize(100000);
    }
    try (OutputStream stream = new BufferedOutputStream(new FileOutputStream(out))) {
      serializer.setOutputStream(stream);
      parser.setProperty("http://xml.org/sax/properties/lexical-handler", serializer);
      parser.parse(new File(in), serializer);
    }
  }

  static void toXml(Transformer transformer, String in, String out) throws Exception {
    try (InputStream stream = new FileInputStream(in);
        OutputStream result = new BufferedOutputStream(new FileOutputStream(out))) {
      transformer.transform(new SAXSource(new SAXDocumentParser(), new InputSource(stream)),
          new StreamResult(result));
    }
  }

  // Typed documents: each value kind as element content (alone, repeated, and beside text) and
  // as attribute values. Reading a document back as text must give the values the Java side
  // prints for it.
  static void writeTyped(String prefix) throws Exception {
    for (int variant = 1; variant <= 2; variant++) {
      SAXDocumentSerializer s = new SAXDocumentSerializer();
      if (variant == 2) s.setCharacterEncodingScheme("UTF-16BE");
      try (OutputStream stream =
              new BufferedOutputStream(new FileOutputStream(prefix + variant + ".fi"))) {
        s.setOutputStream(stream);
        s.startDocument();
        EncodingAlgorithmAttributesImpl rootAttributes = new EncodingAlgorithmAttributesImpl();
        rootAttributes.addAttributeWithBuiltInAlgorithmData(
            "", "i", "i", EncodingAlgorithmIndexes.INT, new int[] {258, -7});
        rootAttributes.addAttributeWithBuiltInAlgorithmData(
            "", "b", "b", EncodingAlgorithmIndexes.BOOLEAN, new boolean[] {true});
        rootAttributes.addAttributeWithBuiltInAlgorithmData(
            "", "l", "l", EncodingAlgorithmIndexes.LONG, new long[] {Long.MIN_VALUE});
        rootAttributes.addAttributeWithBuiltInAlgorithmData(
            "", "d", "d", EncodingAlgorithmIndexes.DOUBLE, new double[] {0.1, -2.0});
        rootAttributes.addAttributeWithBuiltInAlgorithmData(
            "", "x", "x", EncodingAlgorithmIndexes.BASE64, new byte[] {(byte) 0xDE, 0x00, 0x7F});
        rootAttributes.addAttribute("", "t", "t", "CDATA", "plain");
        s.startElement("", "typed", "typed", rootAttributes);
        for (int round = 0; round < 3; round++) {
          element(s, "short");
          s.shorts(new short[] {1, -2, Short.MAX_VALUE, Short.MIN_VALUE, (short) round}, 0, 5);
          end(s, "short");
          element(s, "int");
          s.ints(new int[] {0, 1000, -1, Integer.MIN_VALUE, Integer.MAX_VALUE, round}, 0, 6);
          end(s, "int");
          element(s, "long");
          s.longs(new long[] {Long.MIN_VALUE, Long.MAX_VALUE, 1L << 40, -round}, 0, 4);
          end(s, "long");
          element(s, "boolean");
          boolean[] flags = new boolean[1 + round * 8];
          for (int i = 0; i < flags.length; i++) flags[i] = (i * 7 + round) % 3 == 0;
          s.booleans(flags, 0, flags.length);
          end(s, "boolean");
          element(s, "float");
          s.floats(new float[] {1.5f, -0.0f, 0.1f, Float.MAX_VALUE, Float.MIN_VALUE, 1e10f,
              123456.79f, 1e-7f, Float.NaN, Float.POSITIVE_INFINITY, round}, 0, 11);
          end(s, "float");
          element(s, "double");
          s.doubles(new double[] {-2.0, 0.1, Math.PI, Double.MAX_VALUE, Double.MIN_VALUE, 1e21,
              1e-7, 100.0, Double.NEGATIVE_INFINITY, round}, 0, 10);
          end(s, "double");
          element(s, "bytes");
          byte[] bytes = new byte[round * 37 + 1];
          for (int i = 0; i < bytes.length; i++) bytes[i] = (byte) (i * 31 + round);
          s.bytes(bytes, 0, bytes.length);
          end(s, "bytes");
          element(s, "uuid");
          s.uuids(new long[] {0x0123456789abcdefL, 0xfedcba9876543210L, round, -1L}, 0, 4);
          end(s, "uuid");
          element(s, "mixed");
          text(s, "before ");
          s.ints(new int[] {42 + round}, 0, 1);
          text(s, " after");
          end(s, "mixed");
        }
        end(s, "typed");
        s.endDocument();
      }
    }
  }

  static void element(SAXDocumentSerializer s, String name) throws Exception {
    s.startElement("", name, name, new AttributesImpl());
  }

  static void end(SAXDocumentSerializer s, String name) throws Exception {
    s.endElement("", name, name);
  }

  static void text(SAXDocumentSerializer s, String text) throws Exception {
    s.characters(text.toCharArray(), 0, text.length());
  }
}
