// The Java Fast Infoset codec (libfastinfoset-java) on one XML document, for fi_bench to report
// beside the library's own figures. Run with the single-file launcher:
//
//   java -cp /usr/share/java/FastInfoset.jar FiJavaBench.java IN.xml REPETITIONS
//
// Encoding is XML -> FI through a namespace-aware SAX parser and SAXDocumentSerializer (the
// codec's own XML_SAX_FI path), into memory; decoding is FI -> SAX events to a handler that does
// nothing, through SAXDocumentParser. After a warm-up of as many runs, it prints the median
// milliseconds of each and the size of the Fast Infoset output:
//   encode_ms=<m> decode_ms=<m> fi_bytes=<n> xml_bytes=<n>
import com.sun.xml.fastinfoset.sax.SAXDocumentParser;
import com.sun.xml.fastinfoset.sax.SAXDocumentSerializer;
import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.Arrays;
import javax.xml.parsers.SAXParser;
import javax.xml.parsers.SAXParserFactory;
import org.xml.sax.InputSource;
import org.xml.sax.helpers.DefaultHandler;

public class FiJavaBench {
  public static void main(String[] args) throws Exception {
    byte[] xml = Files.readAllBytes(Paths.get(args[0]));
    int repetitions = Integer.parseInt(args[1]);
    SAXParserFactory factory = SAXParserFactory.newInstance();
    factory.setNamespaceAware(true);
    SAXParser parser = factory.newSAXParser();
    byte[] fi = null;
    double[] encode = new double[repetitions];
    double[] decode = new double[repetitions];
    for (int round = 0; round < 2; ++round) {
      for (int i = 0; i < repetitions; ++i) {
        long start = System.nanoTime();
        ByteArrayOutputStream out = new ByteArrayOutputStream(xml.length / 2);
        SAXDocumentSerializer serializer = new SAXDocumentSerializer();
        serializer.setOutputStream(out);
        parser.reset();
        parser.setProperty("http://xml.org/sax/properties/lexical-handler", serializer);
        parser.parse(new InputSource(new ByteArrayInputStream(xml)), serializer);
        fi = out.toByteArray();
        encode[i] = (System.nanoTime() - start) / 1e6;
      }
      for (int i = 0; i < repetitions; ++i) {
        long start = System.nanoTime();
        SAXDocumentParser reader = new SAXDocumentParser();
        reader.setContentHandler(new DefaultHandler());
        reader.parse(new ByteArrayInputStream(fi));
        decode[i] = (System.nanoTime() - start) / 1e6;
      }
    }
    System.out.printf("encode_ms=%.3f decode_ms=%.3f fi_bytes=%d xml_bytes=%d%n", median(encode),
        median(decode), fi.length, xml.length);
  }

  static double median(double[] values) {
    double[] sorted = values.clone();
    Arrays.sort(sorted);
    return sorted[sorted.length / 2];
  }
}
