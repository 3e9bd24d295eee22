// What the README and docs/integration.md show is what the checks compile: each block of code
// stands in the file that the line before it names, one of Examples/Snippets or, with a folder, of
// the tree.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

const std::filesystem::path tree = ZIB_TREE;

Lines linesOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  EXPECT_TRUE(stream) << file;
  Lines lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The block may stand further to the left than in its file.
bool standsAt(const Lines& file, std::size_t at, const Lines& block) {
  if (file.size() - at < block.size()) return false;
  const std::size_t indent = file[at].find_first_not_of(' ');
  if (indent == std::string::npos) return false;
  for (std::size_t index = 0; index < block.size(); ++index) {
    const std::string& line = file[at + index];
    if (line != (block[index].empty() ? "" : std::string(indent, ' ') + block[index])) return false;
  }
  return true;
}

// Where the block stands, from `first` on; none where it does not.
std::optional<std::size_t> place(const Lines& file, std::size_t first, const Lines& block) {
  for (std::size_t at = first; at < file.size(); ++at) {
    if (standsAt(file, at, block)) return at;
  }
  return std::nullopt;
}

// As a whole, or, as a page leaves lines out, its paragraphs one after the other.
bool contains(const Lines& file, const Lines& block) {
  if (place(file, 0, block)) return true;
  std::size_t from = 0;
  for (auto begin = block.begin(); begin != block.end();) {
    const auto end = std::find(begin, block.end(), "");
    const Lines paragraph(begin, end);
    const auto at = place(file, from, paragraph);
    if (!at) return false;
    from = *at + paragraph.size();
    begin = end == block.end() ? end : end + 1;
  }
  return true;
}

std::filesystem::path fileNamed(const std::string& name) {
  return name.find('/') == std::string::npos ? tree / "Examples/Snippets" / name : tree / name;
}

// The files whose code the page shows.
std::set<std::string> filesShownBy(const Lines& page) {
  const std::regex name("<!-- (\\S+) -->");
  std::set<std::string> shown;
  for (std::size_t at = 0; at < page.size(); ++at) {
    if (!page[at].starts_with("```")) continue;
    std::smatch match;
    const bool isNamed = at > 0 && std::regex_match(page[at - 1], match, name);
    EXPECT_TRUE(isNamed) << "line " << at + 1
                         << ": a block of code without <!-- FILE --> before it";
    Lines block;
    const std::size_t first = at;
    while (++at < page.size() && page[at] != "```") block.push_back(page[at]);
    if (!isNamed) continue;
    EXPECT_TRUE(contains(linesOf(fileNamed(match[1])), block))
        << "line " << first + 1 << ": not in " << match[1];
    shown.insert(match[1]);
  }
  return shown;
}

TEST(SnippetsTest, OfTheReadmeStandInTheFilesThatTheyName) {
  const std::set<std::string> expected{"C.c", "Cpp.cpp", "ObjectiveC.m", "SwiftUIKit.swift",
                                       "Tests/Package/Outside/CMakeLists.txt"};
  EXPECT_EQ(filesShownBy(linesOf(tree / "README.md")), expected);
}

TEST(SnippetsTest, OfTheGuideStandInTheFilesThatTheyName) {
  std::set<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(tree / "Examples/Snippets")) {
    files.insert(entry.path().filename());
  }
  EXPECT_EQ(filesShownBy(linesOf(tree / "docs/integration.md")), files);
}

}  // namespace
