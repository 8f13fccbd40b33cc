// Context names: how windows are called, and how such a name is read.
#include "host/script/windowlist.h"
#include "support/printqt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {
namespace {

struct AddressCase
{
    const char *what;
    QString address;
    QString file;
};

class ContextFile : public ::testing::TestWithParam<AddressCase>
{
};

TEST_P(ContextFile, IsTheLastPartOfTheAddress)
{
    EXPECT_EQ(contextFile(GetParam().address), GetParam().file);
}

INSTANTIATE_TEST_SUITE_P(Addresses, ContextFile,
    ::testing::Values(AddressCase{"PlainFile", u"http://shop/cart.html"_s, u"cart.html"_s},
        AddressCase{"SlashInTheQuery", u"http://shop/a/b.html?x=/y#z"_s, u"b.html"_s},
        AddressCase{"Folder", u"http://shop/a/"_s, u"index.html"_s},
        AddressCase{"SessionId", u"http://shop/a;jsessionid=1"_s, u"a"_s},
        AddressCase{"FragmentOnly", u"http://shop/a.html#part"_s, u"a.html"_s},
        AddressCase{"Data", u"data:text/html,<p>x</p>"_s, u"top"_s},
        AddressCase{"Blank", u"about:blank"_s, u"about:blank"_s}, AddressCase{"Nothing", u""_s, u""_s}),
    [](const auto &row) { return std::string(row.param.what); });

TEST(ContextName, FallsApartIntoFileNumberAndFrames)
{
    const ContextName context = ContextName::parse(u"index.html<2>.FRAME1.FRAME3"_s);

    EXPECT_EQ(context.file, u"index.html"_s);
    EXPECT_EQ(context.number, 2);
    EXPECT_EQ(context.frames, u".FRAME1.FRAME3"_s);
    EXPECT_EQ(context.insidePage(), u"index.html.FRAME1.FRAME3"_s);
    EXPECT_EQ(context.toString(), u"index.html<2>.FRAME1.FRAME3"_s);
}

TEST(ContextName, TheFirstWindowHasNoNumber)
{
    const ContextName context = ContextName::parse(u"index.html"_s);

    EXPECT_EQ(context.number, 1);
    EXPECT_EQ(context.frames, u""_s);
    EXPECT_EQ(context.toString(), u"index.html"_s);
}

TEST(ContextName, WhatOnlyLooksLikeAFrameBelongsToTheFile)
{
    const ContextName context = ContextName::parse(u"a.FRAMEX.html"_s);

    EXPECT_EQ(context.file, u"a.FRAMEX.html"_s);
    EXPECT_EQ(context.frames, u""_s);
}

} // namespace
} // namespace Ostrel::Host
