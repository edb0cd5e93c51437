#include "books/SequenceFile.h"
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <stdexcept>

namespace Tallymoor {

namespace {

constexpr std::string_view ARROW = " -> ";
constexpr std::string_view DOCUMENT_LINE = "  <";
constexpr std::string_view CASE = "case ";

std::string oneWord(const std::string& text) {
  std::string word;
  bool begins = true;
  for (char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)))
      word += static_cast<char>(begins ? std::toupper(static_cast<unsigned char>(c)) : c);
    begins = !std::isalnum(static_cast<unsigned char>(c)) && c != '\'';
  }
  return word;
}

std::vector<std::string> wordsOf(const std::string& text) {
  std::vector<std::string> words;
  for (std::size_t at = text.find_first_not_of(' '); at != std::string::npos;) {
    const bool quoted = text[at] == '"';
    const std::size_t begin = quoted ? at + 1 : at;
    const std::size_t end = std::min(text.find(quoted ? '"' : ' ', begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    at = end < text.size() ? text.find_first_not_of(' ', end + 1) : std::string::npos;
  }
  return words;
}

SequenceStep stepOf(const std::string& text, int line) {
  SequenceStep step;
  step.line = line;
  const std::size_t arrow = text.find(ARROW);
  step.text = text.substr(0, arrow);
  step.words = wordsOf(step.text);
  if (arrow != std::string::npos)
    step.expected = text.substr(arrow + ARROW.size());
  return step;
}

void readFile(const std::filesystem::path& path, std::vector<Sequence>& sequences) {
  std::ifstream file(path);
  if (!file)
    throw std::runtime_error("can't read " + path.string());
  const std::size_t first = sequences.size();
  std::string text;
  for (int line = 1; std::getline(file, text); ++line) {
    if (text.empty() || text[0] == '#')
      continue;
    if (text.starts_with(CASE)) {
      const std::string title = text.substr(CASE.size());
      sequences.push_back({oneWord(path.stem().string()) + "_" + oneWord(title), title, {}});
      continue;
    }
    if (sequences.size() == first)
      throw std::runtime_error(path.string() + " begins without a case");
    std::vector<SequenceStep>& steps = sequences.back().steps;
    if (text.starts_with(DOCUMENT_LINE))
      steps.back().document += text.substr(DOCUMENT_LINE.size() - 1) + '\n';
    else
      steps.push_back(stepOf(text, line));
  }
}

} // namespace

void PrintTo(const Sequence& sequence, std::ostream* out) {
  *out << sequence.title;
}

std::vector<Sequence> readSequences(const std::string& folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".txt")
      paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::vector<Sequence> sequences;
  for (const std::filesystem::path& path : paths)
    readFile(path, sequences);
  return sequences;
}

} // namespace Tallymoor
