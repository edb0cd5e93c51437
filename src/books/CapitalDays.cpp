#include "books/CapitalDays.h"
#include "foundation/Exception.h"
#include "xml/RecordTexts.h"
#include "xml/Utf8Writer.h"
#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

namespace Tallymoor {

namespace {

const String STANDING = u"Standing";
constexpr double UNKNOWN = std::numeric_limits<double>::quiet_NaN();

PriceStanding standingOf(const XMLElement& shareVal) {
  return shareVal.hasAttribute(STANDING) ? standingNamed(shareVal.attribute(STANDING)) : PriceStanding::Final;
}

void setStandingOf(XMLElement& shareVal, PriceStanding standing) {
  if (standing == PriceStanding::Final)
    shareVal.removeAttribute(STANDING);
  else
    shareVal.setAttribute(STANDING, standingName(standing));
}

std::string encoded(XMLElement& element) {
  std::ostringstream text;
  element.encode(text);
  return text.str();
}

std::string elementOfCode(const String& code) {
  XMLString element;
  element.markContentUnsafe();
  element.setValue(code);
  return encoded(element);
}

} // namespace

CapitalDays::CapitalDays(const CapitalDays& other)
    : m_days(other.m_days), m_holdings(other.m_holdings), m_injections(other.m_injections),
      m_codes(other.m_codes), m_codePlaces(other.m_codePlaces), m_texts(other.m_texts) {
  for (const auto& [day, element] : other.m_elements)
    m_elements.emplace(day, std::make_unique<XMLDayCap>(*element));
}

void CapitalDays::clear() {
  *this = CapitalDays();
}

// --- Reading

std::size_t CapitalDays::firstFrom(const Date& date) const {
  const auto found =
      std::lower_bound(m_days.begin(), m_days.end(), date.julianDay(),
                       [](const Day& day, std::uint32_t julianDay) { return day.julianDay < julianDay; });
  return static_cast<std::size_t>(found - m_days.begin());
}

std::size_t CapitalDays::firstAfter(const Date& date) const {
  const std::size_t day = firstFrom(date);
  return day + (day < size() && m_days[day].julianDay == date.julianDay());
}

std::optional<std::size_t> CapitalDays::find(const Date& date) const {
  const std::size_t day = firstFrom(date);
  return day < size() && m_days[day].julianDay == date.julianDay() ? std::optional(day) : std::nullopt;
}

std::size_t CapitalDays::endOfHoldings(std::size_t day) const {
  return day + 1 < size() ? m_days[day + 1].firstHolding : m_holdings.size();
}

std::span<const CapitalDays::Holding> CapitalDays::holdings(std::size_t day) const {
  const std::size_t first = m_days[day].firstHolding;
  return std::span(m_holdings).subspan(first, endOfHoldings(day) - first);
}

const CapitalDays::Holding* CapitalDays::holding(std::size_t day, const String& code) const {
  const auto known = m_codePlaces.find(code);
  if (known == m_codePlaces.end())
    return nullptr;
  const std::span<const Holding> held = holdings(day);
  const auto found = std::find_if(held.begin(), held.end(), [place = known->second](const Holding& holding) {
    return holding.code == place;
  });
  return found == held.end() ? nullptr : &*found;
}

double CapitalDays::value(WrittenNumber number) const {
  return number.isKept() ? m_texts[number.keptPlace()].toDouble() : number.value();
}

double CapitalDays::sharesValue(std::size_t day) const {
  double& sum = m_days[day].sharesValue;
  if (std::isnan(sum)) {
    sum = 0.0;
    for (const Holding& holding : holdings(day))
      sum += value(holding.number) * value(holding.price);
  }
  return sum;
}

std::vector<CapitalDays::Injection>::const_iterator CapitalDays::injectionFrom(std::size_t day) const {
  return std::lower_bound(m_injections.begin(), m_injections.end(), day,
                          [](const Injection& injection, std::size_t at) { return injection.day < at; });
}

double CapitalDays::injectedBetween(std::size_t first, std::size_t end) const {
  double sum = 0.0;
  for (auto injection = injectionFrom(first); injection != m_injections.end() && injection->day < end;
       ++injection)
    sum += value(injection->value);
  return sum;
}

// --- Changing

void CapitalDays::addDay(const Date& date, WrittenNumber cash) {
  m_days.push_back({date.julianDay(), static_cast<std::uint32_t>(m_holdings.size()), cash, UNKNOWN});
}

void CapitalDays::addHolding(std::uint32_t code, WrittenNumber number, WrittenNumber price,
                             PriceStanding standing) {
  m_holdings.push_back({code, standing, number, price});
}

void CapitalDays::setInjected(WrittenNumber value) {
  m_injections.push_back({size() - 1, value});
}

void CapitalDays::addDay(XMLElement& dayCap) {
  const Date date = dateValue(dayCap, u"Date");
  if (!empty() && date <= this->date(size() - 1))
    throw Exception(u"CapitalDays::addDay - days out of order, clear and start again");
  addDay(date, written(textValue(dayCap, u"CashTotal")));
  for (std::size_t i = 0; i < dayCap.numSubElements(u"ShareVals"); ++i) {
    const XMLElement& shareVal = dayCap.subElement(u"ShareVals", i);
    addHolding(placeOf(textValue(shareVal, u"Code")), written(textValue(shareVal, u"Number")),
               written(textValue(shareVal, u"Price")), standingOf(shareVal));
  }
  if (dayCap.numSubElements(u"CashInjected") > 0)
    setInjected(written(textValue(dayCap, u"CashInjected")));
  std::ostringstream rows;
  Utf8Writer writer(rows);
  writeRows(writer, size() - 1);
  writer.flush();
  if (rows.str() != encoded(dayCap))
    m_elements[size() - 1] = std::make_unique<XMLDayCap>(static_cast<const XMLDayCap&>(dayCap));
}

std::uint32_t CapitalDays::placeOf(const String& code) {
  const auto [place, isNew] = m_codePlaces.try_emplace(code, static_cast<std::uint32_t>(m_codes.size()));
  if (isNew)
    m_codes.push_back({code, elementOfCode(code)});
  return place->second;
}

WrittenNumber CapitalDays::written(const String& text) {
  if (const auto plain = WrittenNumber::of(std::u16string_view(text)))
    return *plain;
  m_texts.push_back(text);
  return WrittenNumber::kept(m_texts.size() - 1);
}

String CapitalDays::text(WrittenNumber number) const {
  if (number.isKept())
    return m_texts[number.keptPlace()];
  char text[WrittenNumber::LONGEST_TEXT];
  return String(String::Base(text, number.write(text)));
}

std::optional<std::size_t> CapitalDays::placeInDay(std::size_t day, const String& code) const {
  const Holding* const found = holding(day, code);
  return found ? std::optional(static_cast<std::size_t>(found - holdings(day).data())) : std::nullopt;
}

void CapitalDays::setPrice(std::size_t day, std::size_t place, const String& price) {
  m_holdings[m_days[day].firstHolding + place].price = written(price);
  m_days[day].sharesValue = UNKNOWN;
  if (const auto element = m_elements.find(day); element != m_elements.end())
    element->second->subElement(u"ShareVals", place).subElement(u"Price").setValue(price);
}

void CapitalDays::setStanding(std::size_t day, std::size_t place, PriceStanding standing) {
  m_holdings[m_days[day].firstHolding + place].standing = standing;
  if (const auto element = m_elements.find(day); element != m_elements.end())
    setStandingOf(element->second->subElement(u"ShareVals", place), standing);
}

void CapitalDays::dropFrom(std::size_t day) {
  if (day >= size())
    return;
  m_holdings.resize(m_days[day].firstHolding);
  m_injections.erase(injectionFrom(day), m_injections.end());
  m_elements.erase(m_elements.lower_bound(day), m_elements.end());
  m_days.resize(day);
}

// --- Writing

void CapitalDays::write(Utf8Writer& writer, std::size_t day) const {
  const auto element = m_elements.find(day);
  if (element == m_elements.end())
    writeRows(writer, day);
  else
    writer.raw(encoded(*element->second));
}

void CapitalDays::writeRows(Utf8Writer& writer, std::size_t day) const {
  writer.raw("<DayCap><Date>");
  writer.text(dayText(date(day)));
  writer.raw("</Date>");
  writeNumber(writer, m_days[day].cash);
  for (const Holding& holding : holdings(day)) {
    writer.raw("<ShareVal");
    if (holding.standing != PriceStanding::Final) {
      writer.raw(" Standing=\"");
      writer.text(standingName(holding.standing));
      writer.raw("\"");
    }
    writer.raw('>');
    writer.raw(m_codes[holding.code].element);
    writeNumber(writer, holding.number);
    writeNumber(writer, holding.price);
    writer.raw("</ShareVal>");
  }
  if (const auto injection = injectionFrom(day); injection != m_injections.end() && injection->day == day)
    writeNumber(writer, injection->value);
  writer.raw("</DayCap>");
}

void CapitalDays::writeNumber(Utf8Writer& writer, WrittenNumber number) const {
  if (number.isKept() && m_texts[number.keptPlace()].empty()) {
    writer.raw("<Constant/>");
    return;
  }
  writer.raw("<Constant>");
  if (number.isKept()) {
    writer.text(m_texts[number.keptPlace()]);
  } else {
    char text[WrittenNumber::LONGEST_TEXT];
    writer.raw(std::string_view(text, static_cast<std::size_t>(number.write(text) - text)));
  }
  writer.raw("</Constant>");
}

std::unique_ptr<XMLDayCap> CapitalDays::element(std::size_t day) const {
  if (const auto kept = m_elements.find(day); kept != m_elements.end())
    return std::make_unique<XMLDayCap>(*kept->second);
  auto dayCap = std::make_unique<XMLDayCap>();
  dayCap->subElement(u"Date").setValue(dayText(date(day)));
  dayCap->subElement(u"CashTotal").setValue(text(m_days[day].cash));
  for (const Holding& holding : holdings(day)) {
    XMLElement& shareVal = dayCap->addSubElement(XMLShareVal::create(), u"ShareVals");
    shareVal.subElement(u"Code").setValue(code(holding));
    shareVal.subElement(u"Number").setValue(text(holding.number));
    shareVal.subElement(u"Price").setValue(text(holding.price));
    setStandingOf(shareVal, holding.standing);
  }
  if (const auto injection = injectionFrom(day); injection != m_injections.end() && injection->day == day)
    dayCap->addSubElement(new XMLConstant, u"CashInjected").setValue(text(injection->value));
  return dayCap;
}

} // namespace Tallymoor
