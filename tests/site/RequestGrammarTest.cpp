// Requests and links as visitors send them, the evil ones among them.
#include "core/site/RequestGrammar.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>

#include "core/site/ByteRange.h"
#include "platform/runtime/Encoding.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {
namespace {

std::string RangeText(const std::string &header) {
    const auto range = ReadByteRange(header, 1000);
    if (!range) return "(none)";
    return range->Length == 0 ? "nothing" : Concat(range->First, "+", range->Length);
}

std::string LoginText(const std::string &request) {
    const LoginForm form = ParseLoginForm(request);
    return Concat(form.Username, "|", form.Password, "|", Join(form.Args, "|"));
}

std::string AddressText(const std::string &address) {
    const Target target = ParseTarget(address);
    return target.Name + (target.HasQuery ? "|" : "") + Join(target.Args, "|");
}

std::string VisitorPage(const std::string &request) {
    return GetVisitorPageName(request, [](std::int32_t number) {
        if (number < 1 || number > 2) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        return number == 1 ? "Trips" : "Home";
    });
}

/// By the first column of grammar.tsv.
const std::map<std::string, std::function<std::string(const std::string &)>> functions = {
    {"query", DecodeQuery},
    {"link", EncodeLinkPart},
    {"tokens", DecodeLinkTokens},
    {"service", EncodeServiceText},
    {"address", AddressText},
    {"target",
     [](const std::string &request) {
         return GetRequestTarget(request).value_or("(none)");
     }},
    {"method", GetRequestMethod},
    {"cookie", GetCookieUsername},
    {"range header",
     [](const std::string &request) {
         return HeaderValue(request, "Range").value_or("(none)");
     }},
    {"page", VisitorPage},
    {"login", LoginText},
    {"login address",
     [](const std::string &text) {
         return IsLoginAddress(Split(text, "&")) ? "yes" : "no";
     }},
    {"range", RangeText},
};

std::string Unescaped(std::string text) {
    const std::pair<const char *, char> escapes[] = {{"\\r", '\r'}, {"\\n", '\n'}, {"\\t", '\t'}, {"\\0", '\0'}};
    for (const auto &[escape, byte] : escapes) text = Replace(text, escape, {&byte, 1});
    return text;
}

TEST(RequestGrammar, ReadsAsTheTableSays) {
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "grammar.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with('#')) continue;
        const std::vector<std::string> row = Split(line, "\t");
        ASSERT_EQ(row.size(), 4U) << line;
        const auto result = Try([&] { return functions.at(row[0])(Unescaped(row[2])); });
        EXPECT_EQ(result.value_or("(error)"), Unescaped(row[3])) << line;
        ++rows;
    }
    EXPECT_GT(rows, 100);
    EXPECT_EQ(ReadByteRange("bytes=0-", 0)->Length, 0) << "an empty file";
}

TEST(DecodeQuery, DecodesTheWorstThatOneArrivalHolds) {
    const std::string text = "%" + RepeatString("25", 16000) + "41" + RepeatString("%41", 10800);
    EXPECT_EQ(DecodeQuery(text), std::string(10801, 'A'));
}

/// What the server gets of a link in a page's attribute (HTML and URL standards of the WHATWG).
std::string AsBrowsersSend(std::string_view link) {
    EXPECT_TRUE(IsUtf8(link) && link.find('&') == std::string_view::npos) << link;
    link = link.substr(0, link.find('"'));
    while (!link.empty() && static_cast<unsigned char>(link.back()) <= ' ') link.remove_suffix(1);
    std::string sent;
    for (const char c : link.substr(0, link.find('#'))) {
        if (Contains("\t\r\n", {&c, 1})) continue;
        const auto code = static_cast<unsigned char>(c);
        if (code > ' ' && code < 0x7F && !Contains("\"<>'", {&c, 1})) {
            sent += c;
        } else {
            char escape[4];
            std::snprintf(escape, sizeof escape, "%%%02X", code);
            sent += escape;
        }
    }
    return sent;
}

TEST(LinkParts, CarryAnyNameThroughPageBrowserAndQuery) {
    std::mt19937 random(7);
    const std::vector<std::string> pieces = Split(
        "&|+|#|%|*|\"|<|>|'| |.|=|\xE9|\xC3\xA9|\xED\xA0\x80|<amp>and<amp>|<byte>2A<byte>|"
        "<percent>num<percent>20|%20|fbclid=|a",
        "|");
    for (int i = 0; i < 5000; ++i) {
        std::string name;
        for (auto parts = random() % 7; parts > 0; --parts)
            name +=
                i % 2 == 0 ? pieces[random() % pieces.size()] : std::string(1, static_cast<char>(1 + random() % 255));
        name = Replace(name, "/", "");
        const std::string head =
            "GET /ShowAlbum?1&thumbs&1&x&" + AsBrowsersSend(EncodeLinkPart(name)) + " HTTP/1.0\r\n\r\n";
        const Target target = ParseTarget(GetRequestTarget(head).value());
        ASSERT_EQ(target.Args.size(), name.empty() ? 4U : 5U) << name;
        ASSERT_EQ(DecodeLinkPart(name.empty() ? "" : target.Args[4]), name);
    }
}

}  // namespace
}  // namespace pixmora
