// Builds the tag tree of a page of half a megabyte with a price table of 250 rows, compared with the tree
// parser of libxml2. Destroying the trees is not measured.
#include "Ratio.h"
#include "foundation/String.h"
#include "pages/HTMLParser.h"
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <libxml/HTMLparser.h>
#include <string>
#include <utility>

namespace Tallymoor {
namespace {

constexpr std::size_t PAGE_SIZE = 500'000;
constexpr int TABLE_ROWS = 250;
constexpr int ROUNDS = 41;
constexpr double PARSE_LIMIT = 0.3;

std::string number(int value) {
  return std::to_string(value);
}

std::string price(int seed) {
  return number(10 + seed % 90) + "." + number(10 + seed * 7 % 90);
}

std::string head() {
  std::string text =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<title>ABC.AX historical prices</title>\n"
      "<link rel=\"stylesheet\" type=\"text/css\" href=\"/static/style.css?v=12\">\n<script>\n";
  for (int i = 0; i < 200; ++i)
    text += "var option" + number(i) + " = { name: \"value <b>" + number(i) + "</b>\", limit: i < " +
            number(i) + " };\n";
  return text + "</script>\n</head>\n<body class=\"wide\">\n";
}

std::string navigation(int i) {
  return "<div class=\"menu\" id=\"m" + number(i) +
         "\"><ul class=\"list\"><li class=\"item\"><a href=\"/quote?code=X" + number(i) +
         ".AX&amp;view=full\" title=\"Quote " + number(i) + "\">Share number " + number(i) +
         "</a><li><a href=\"/news/" + number(i) +
         "\">News of the day about it, in a line of ordinary text</a></ul>\n"
         "<!-- end of the entry -->\n<p>Closed at " +
         price(i) +
         " after a day of thin trading.<br>"
         "<img src=\"/i/arrow.gif\" alt=up width=10 height=10></div>\n";
}

std::string tableRow(int row) {
  std::string text = "<tr class=\"" + std::string(row % 2 ? "odd" : "even") + "\">";
  text += "<td class=\"date\" align=\"left\"><span data-day=\"" + number(row) + "\">" + number(1 + row % 28) +
          "-Mar-06</span></td>";
  for (int column = 0; column < 4; ++column)
    text += "<td class=\"number price\" align=\"right\" nowrap>" + price(row * 5 + column) + "</td>";
  return text + "<td class=\"number\">" + number(1 + row % 9) + "," + number(100 + row) + ",300</td></tr>\n";
}

std::string makePage() {
  std::string table = "<table class=\"prices\" cellpadding=0><tbody>\n";
  for (int row = 0; row < TABLE_ROWS; ++row)
    table += tableRow(row);
  table += "</tbody></table>\n";
  std::string page = head();
  const std::size_t before = (PAGE_SIZE - table.size()) / 2;
  int entry = 0;
  while (page.size() < before)
    page += navigation(entry++);
  page += table;
  while (page.size() < PAGE_SIZE)
    page += navigation(entry++);
  return page + "</body>\n</html>\n";
}

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double parseWithOurs(String page) {
  const auto start = std::chrono::steady_clock::now();
  const HTMLPage tree = HTMLParser::Parse(std::move(page)); // Like the program with a fetched page.
  const double seconds = secondsSince(start);
  if (tree->numSubTags() == 0)
    std::abort();
  return seconds;
}

double parseWithLibrary(const std::string& page) {
  const auto start = std::chrono::steady_clock::now();
  const htmlDocPtr tree =
      htmlReadMemory(page.data(), static_cast<int>(page.size()), nullptr, "UTF-8",
                     HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET);
  const double seconds = secondsSince(start);
  if (tree == nullptr)
    std::abort();
  xmlFreeDoc(tree);
  return seconds;
}

void parsePage(benchmark::State& state) {
  const String page = String::fromUTF8(makePage());
  for (auto _ : state)
    benchmark::DoNotOptimize(HTMLParser::Parse(page));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(page.size()));
}
BENCHMARK(parsePage)->Unit(benchmark::kMicrosecond);

/// The step before it in the program: converts the page's bytes to text.
void convertPage(benchmark::State& state) {
  const std::string bytes = makePage();
  for (auto _ : state)
    benchmark::DoNotOptimize(String(bytes.c_str()));
}
BENCHMARK(convertPage)->Unit(benchmark::kMicrosecond);

void countNestedTags(benchmark::State& state) {
  std::string text = "<html>";
  for (int i = 0; i < state.range(0); ++i)
    text += "<div>";
  for (int i = 0; i < state.range(0); ++i)
    text += "</div>";
  const HTMLPage page = HTMLParser::Parse(String::fromUTF8(text + "</html>"));
  for (auto _ : state)
    benchmark::DoNotOptimize(page->countTags());
  state.SetComplexityN(state.range(0));
}
BENCHMARK(countNestedTags)->Range(1 << 10, 1 << 17)->Complexity();

bool checkLimit() {
  const std::string bytes = makePage();
  const String page = String::fromUTF8(bytes);
  const double ratio = Bench::measureRatio(
      ROUNDS, [&] { return parseWithOurs(page); }, [&] { return parseWithLibrary(bytes); });
  return Bench::printRatio("html_parse", ratio, PARSE_LIMIT);
}

} // namespace
} // namespace Tallymoor

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return Tallymoor::checkLimit() ? 0 : 1;
}
