// HTML that no text can break.

#include "Simulator/Page/Markup.h"

#include <gtest/gtest.h>

namespace {

using sim::Markup;

TEST(MarkupTest, EscapesTextsAndValues) {
  Markup markup;
  markup.element("p", "<b>&\"'</b>", {{"title", "\"><script>'"}});
  EXPECT_EQ(markup.str(),
            "<p title=\"&quot;&gt;&lt;script&gt;&#39;\">&lt;b&gt;&amp;&quot;&#39;&lt;/b&gt;</p>");
}

TEST(MarkupTest, ReplacesWhatADocumentCannotHold) {
  Markup markup;
  markup.text(std::string_view("a\0b", 3));
  EXPECT_EQ(markup.str(), "a\uFFFDb");
}

TEST(MarkupTest, ClosesWhatIsOpen) {
  Markup inner;
  inner.open("ul").open("li").text("x");
  Markup outer;
  outer.open("div").add(inner).text("y");
  EXPECT_EQ(outer.str(), "<div><ul><li>x</li></ul>y</div>");
}

}  // namespace
