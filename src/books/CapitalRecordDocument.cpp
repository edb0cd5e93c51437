#include "books/CapitalRecordDocument.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "foundation/Uninterrupted.h"
#include "xml/PlainDocument.h"
#include "xml/Utf8Writer.h"
#include <sstream>

namespace Tallymoor {

namespace {

constexpr std::string_view BEGIN = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view END = "</SharePortfolioCapitalRecord>";
constexpr std::string_view DAY_BEGIN = "<DayCap>";
constexpr std::string_view DAY_END = "</DayCap>";

bool isPlain(char letter) {
  return letter >= ' ' && letter <= '~' && letter != '<' && letter != '>';
}

bool isOfNumber(char letter) {
  return (letter >= '0' && letter <= '9') || letter == '.' || letter == '-';
}

/// Reads a document in the form in which it is written, piece by piece, so that the file is never in memory
/// as a whole.
class PlainReading {
public:
  PlainReading(std::istream& file, CapitalRecordDocument& document) : m_file(file), m_document(document) {}

  /// False when the document is not in that form; what has been read is then to be cleared.
  bool read() {
    bool isLast = !readMore();
    const std::size_t begin = m_piece.find(DAY_BEGIN);
    if (begin == std::string::npos || !readHead(m_piece.substr(0, begin)))
      return false;
    m_piece.erase(0, begin);
    for (; !isLast; isLast = !readMore()) {
      const std::size_t lastDay = m_piece.rfind(DAY_END);
      if (lastDay == std::string::npos || !readDays(lastDay + DAY_END.size()))
        return false;
    }
    return m_piece.ends_with(END) && readDays(m_piece.size() - END.size()) && !m_file.bad();
  }

private:
  static constexpr std::size_t PIECE = std::size_t{256} * 1024; ///< far longer than a day
  static constexpr std::size_t LONGEST_CODE = 64;

  /// False at the end of the file.
  bool readMore() {
    const std::size_t had = m_piece.size();
    m_piece.resize(had + PIECE);
    m_file.read(m_piece.data() + had, PIECE);
    m_piece.resize(had + static_cast<std::size_t>(m_file.gcount()));
    return m_file.good();
  }

  bool readHead(std::string text) {
    if (!text.starts_with(BEGIN) || text.find('\0') != std::string::npos)
      return false;
    try {
      XMLSharePortfolioCapitalRecord head;
      head.decode(text.append(END).c_str());
      m_document.head = head;
      return head.numSubElements(u"DayCaps") == 0;
    } catch (const Exception&) {
      return false;
    }
  }

  /// Takes the days off the piece, up to this length.
  bool readDays(std::size_t length) {
    PlainDocument text(std::string_view(m_piece).substr(0, length));
    while (!text.isAtEnd())
      if (!readDay(text))
        return false;
    m_piece.erase(0, length);
    return true;
  }

  bool readDay(PlainDocument& text) {
    CapitalDays& days = m_document.days;
    text.expect(DAY_BEGIN);
    const std::optional<Date> date = text.dayElement();
    if (!date || (!days.empty() && *date <= days.date(days.size() - 1)))
      return false;
    days.addDay(*date, readNumber(text));
    for (std::size_t place = 0; !text.failed() && text.accept("<ShareVal"); ++place)
      readHolding(text, place);
    if (text.startsWith("<Constant>"))
      days.setInjected(readNumber(text));
    text.expect(DAY_END);
    return !text.failed();
  }

  void readHolding(PlainDocument& text, std::size_t place) {
    const PriceStanding standing = readStanding(text);
    text.expect(">");
    const std::uint32_t code = readCode(text, place);
    const WrittenNumber number = readNumber(text);
    const WrittenNumber price = readNumber(text);
    text.expect("</ShareVal>");
    m_document.days.addHolding(code, number, price, standing);
  }

  static PriceStanding readStanding(PlainDocument& text) {
    if (!text.accept(" Standing=\""))
      return PriceStanding::Final;
    const String name = String::fromUTF8(text.take([](char letter) { return letter != '"'; }));
    text.expect("\"");
    const PriceStanding standing = standingNamed(name);
    if (standingName(standing) != name)
      text.fail(); // of a later version
    return standing;
  }

  /// Most stocks stand at the place that they had on the day before.
  std::uint32_t readCode(PlainDocument& text, std::size_t place) {
    const CapitalDays& days = m_document.days;
    if (days.size() > 1)
      if (const auto before = days.holdings(days.size() - 2);
          place < before.size() && text.accept(days.codeElement(before[place])))
        return before[place].code;
    text.expect("<String>");
    const std::string_view code = text.take(isPlain);
    text.expect("</String>");
    return text.failed() ? 0 : placeOf(code, text);
  }

  std::uint32_t placeOf(std::string_view code, PlainDocument& text) {
    if (const auto known = m_codes.find(code); known != m_codes.end())
      return known->second;
    const std::optional<String> read = code.size() <= LONGEST_CODE ? withoutEntities(code) : std::nullopt;
    if (!read) {
      text.fail();
      return 0;
    }
    return m_codes.emplace(code, m_document.days.placeOf(*read)).first->second;
  }

  static std::optional<String> withoutEntities(std::string_view code) {
    if (code.find('&') == std::string_view::npos)
      return String::fromUTF8(code);
    try {
      XMLString element;
      element.decode(("<String>" + std::string(code) + "</String>").c_str());
      return element.value();
    } catch (const Exception&) {
      return std::nullopt;
    }
  }

  static WrittenNumber readNumber(PlainDocument& text) {
    text.expect("<Constant>");
    const std::optional<WrittenNumber> number = WrittenNumber::of(text.take(isOfNumber));
    text.expect("</Constant>");
    if (!number)
      text.fail();
    return number.value_or(WrittenNumber());
  }

  std::istream& m_file;
  CapitalRecordDocument& m_document;
  std::string m_piece;
  std::map<std::string, std::uint32_t, std::less<>> m_codes; ///< by the text in the file
};

/// One that was cut short needs not be read.
bool endsAsWritten(std::istream& file) {
  std::string end(END.size(), '\0');
  file.seekg(-static_cast<std::streamoff>(END.size()), std::ios::end);
  file.read(end.data(), static_cast<std::streamsize>(end.size()));
  file.seekg(0);
  return file.good() && end == END;
}

void readElements(const String& path, CapitalRecordDocument& document) {
  XMLSharePortfolioCapitalRecord record;
  record.decode(path);
  const std::size_t count = record.numSubElements(u"DayCaps");
  for (std::size_t i = 0; i < count; ++i)
    document.days.addDay(record.subElement(u"DayCaps", i));
  record.removeSubElements(u"DayCaps");
  document.head = record;
}

} // namespace

void CapitalRecordDocument::read(const String& path) {
  if (readPlain(path))
    return;
  clear();
  readElements(path, *this);
}

bool CapitalRecordDocument::readPlain(const String& path) {
  clear();
  if (filePresence(path) != FilePresence::RegularFile)
    return false;
  std::ifstream file = openToRead(path.toUTF8());
  return endsAsWritten(file) && PlainReading(file, *this).read();
}

void CapitalRecordDocument::write(std::ostream& stream) {
  std::ostringstream headText;
  head.encodeWithDoctype(headText, RECORDS_DTD);
  Utf8Writer writer(stream);
  // The name is always there, so the root has an end tag.
  writer.raw(headText.view().substr(0, headText.view().size() - END.size()));
  for (std::size_t day = 0; day < days.size(); ++day)
    days.write(writer, day);
  writer.raw(END);
  writer.flush();
}

void CapitalRecordDocument::writeFile(const String& path) {
  replaceFile(
      path, [this](std::ostream& stream) { write(stream); },
      [](const String& temporaryPath) { CapitalRecordDocument().read(temporaryPath); });
}

void CapitalRecordDocument::clear() {
  head.reset();
  days.clear();
}

} // namespace Tallymoor
