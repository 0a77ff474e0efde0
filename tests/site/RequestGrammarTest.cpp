// Requests and links as visitors send them, the evil ones among them.
#include "core/site/RequestGrammar.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "core/site/Globals.h"
#include "core/site/Visitors.h"
#include "platform/runtime/Encoding.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {
namespace {

struct TextCase {
    const char *Name;
    std::string Given;
    std::string Wanted;
};

const TextCase queries[] = {
    {"plain", "1&thumb&/a.jpg", "1&thumb&/a.jpg"},
    {"escape in either case", "%4a%4A", "JJ"},
    {"decoded percent is decoded again", "%2541", "A"},
    {"one digit at the end", "a%9", "a\t"},
    {"plus is a blank", "a+b", "a b"},
    {"two stars are a blank, one is an ampersand", "a**b*c", "a b&c"},
    {"three stars", "***", " &"},
    {"escaped star separates too", "a%2Ab", "a&b"},
    {"UTF-8 stays two bytes", "%C3%A9", "\xC3\xA9"},
    {"escaped NUL", "a%00b", std::string("a\0b", 3)},
    {"an escape that another one completes", "%41%2%41", "A&"},
    {"chains of escaped percents, the longer one later", "%2541%252541%41", "AAA"},
    {"a digit made before its percent", "%41%25%41", "A\n"},
};

TEST(DecodeQuery, TurnsSymbolsBackAndRefusesWhatIsNoEscape) {
    for (const TextCase &row : queries) EXPECT_EQ(DecodeQuery(row.Given), row.Wanted) << row.Name;
    for (const char *text : {"%", "abc%", "%zz", "%4g", "% 1", "%-1", "%25", "%%41"}) {
        EXPECT_THROW(DecodeQuery(text), RunTimeError) << text;
    }
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
    EXPECT_EQ(EncodeLinkPart("a&b+c#d e%*"),
              "a<amp>and<amp>b<plus>and<plus>c<pound>num<pound>d%20e<percent>num<percent><byte>2A<byte>");
    for (const char *text : {"<", "<byte>", "<byte>4", "<byte>4g<byte>", "<byte>41<byte", "<amp>and<am", "<<byte>41"})
        EXPECT_EQ(DecodeLinkTokens(text), text);
    EXPECT_EQ(EncodeServiceText("50% of a & b*"), "50%%20of%20a%20<amp>and<amp>%20b*");
}

TEST(ParseTarget, SplitsNameAndArguments) {
    EXPECT_EQ(ParseTarget("").Name, "Index");
    EXPECT_EQ(ParseTarget("favicon.ico").Name, "faviconico");
    EXPECT_EQ(ParseTarget("Show.Album?x").Name, "Show.Album");
    EXPECT_EQ(ParseTarget("X?1&thumb&x*y%26b").Args, (Arguments{"1", "thumb", "x", "y", "b"}));
    EXPECT_EQ(ParseTarget("X?a&").Args, (Arguments{"a"}));
    EXPECT_EQ(ParseTarget("X?a?b&&").Args, (Arguments{"a?b", ""}));
    EXPECT_TRUE(ParseTarget("X?").HasQuery && ParseTarget("X?").Args.empty());
}

TEST(GetRequestTarget, StandsBetweenTheFirstTwoBlanks) {
    EXPECT_EQ(GetRequestTarget("GET / HTTP/1.0\r\n\r\n"), "");
    EXPECT_EQ(GetRequestTarget("GET /a?b HTTP/1.0\r\n"), "a?b");
    EXPECT_EQ(GetRequestTarget("GET Xabc HTTP"), "abc");
    EXPECT_EQ(GetRequestTarget("GET  HTTP"), "");
    EXPECT_EQ(GetRequestTarget("GET /x\r\n\r\n"), std::nullopt);
    EXPECT_EQ(GetRequestTarget("GET"), std::nullopt);
    for (const char *words : {"fbclid=x", "utm_source=a&utm_medium=b", "gclid=1&igsh=", "mc_eid=2"}) {
        EXPECT_EQ(GetRequestTarget(Concat("GET /?", words, " HTTP/1.1")), "");
        EXPECT_EQ(GetRequestTarget(Concat("GET /ShowAlbum?1&list&1&a&&", words, " HTTP/1.1")), "ShowAlbum?1&list&1&a&");
    }
    EXPECT_EQ(GetRequestTarget("GET /ShowAlbum?gclid=1&list&my_fbclid=2 HTTP/1.1"),
              "ShowAlbum?gclid=1&list&my_fbclid=2");
    EXPECT_EQ(GetRequestMethod("GET"), "");
    EXPECT_EQ(GetRequestMethod(" GET"), "");
}

const TextCase cookies[] = {
    {"none", "GET / HTTP/1.0\r\nHost: x\r\n\r\n", ""},
    {"alone", "Cookie: ms_username=Ann\r\n\r\n", "Ann"},
    {"last header and blank after the semicolon", "Cookie: password=x; ms_username=Ann; a=b\r\n\r\n", "Ann"},
    {"swallows the headers behind it", "Cookie: ms_username=Ann\r\nAge: 1\r\n\r\n", "Ann\r\nAge: 1"},
    {"first of two wins", "Cookie: ms_username=Ann; ms_username=Bob; x=y\r\n\r\n", "Ann"},
    {"header in lower case", "a: b\r\ncookie: ms_username=Ann;x=y\r\n\r\n", "Ann"},
    {"undecoded", "Cookie: ms_username=A%41;x=y\r\n\r\n", "A%41"},
    {"behind the head it doesn't count as ended", "Cookie: a=b\r\n\r\nms_username=Ann", ""},
};

TEST(HeaderValue, IsThatOfTheWholeName) {
    EXPECT_EQ(HeaderValue("GET / HTTP/1.0\r\nX-Range: a\r\nRANGE:  b \r\n\r\nHost: c", "Range"), "b");
    EXPECT_EQ(HeaderValue("GET / HTTP/1.0\r\n\r\nHost: c", "Host"), std::nullopt);
}

TEST(GetCookieUsername, FindsTheName) {
    for (const TextCase &row : cookies) EXPECT_EQ(GetCookieUsername(row.Given), row.Wanted) << row.Name;
    EXPECT_THROW(GetCookieUsername("Cookie: ms_username; a=b\r\n\r\n"), RunTimeError);
}

const TextCase pageNames[] = {
    {"front page", "", "Home Page"},
    {"front page by name", "iNDEX", "Home Page"},
    {"popular", "ShowPopular?thumbs", "Most Popular"},
    {"popular in the frameset", "ShowAlbum?ShowPopular&thumbs", "Most Popular"},
    {"help", "ShowHelp", "Help"},
    {"statistics", "ShowStats", "Statistics"},
    {"album root", "ShowAlbum?1&thumbs&1", "Album: Trips"},
    {"album directory", "ShowAlbum?1&thumbs&1&a%20b&c&", "Album: Trips, Dir: a b > c"},
    {"slide show directory", "ShowAlbum?2&slideshow&1&play&0&5&x", "Album: Home, Dir: x"},
    {"too few pieces", "ShowAlbum?1&thumbs", ""},
    {"number above the count", "ShowAlbum?3&thumbs&1", ""},
    {"no number", "ShowAlbum?ShowHelp", ""},
    {"bad escape", "ShowAlbum?1&thumbs&1&%zz", ""},
    {"frame", "ShowAlbumMedia?1&thumbs&1", ""},
    {"unknown", "Anything", ""},
};

TEST(GetVisitorPageName, NamesPagesAndNotTheirParts) {
    const auto albumName = [](std::int32_t number) {
        if (number < 1 || number > 2) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        return number == 1 ? "Trips" : "Home";
    };
    for (const TextCase &row : pageNames) {
        EXPECT_EQ(GetVisitorPageName("GET /" + row.Given + " HTTP/1.0\r\n\r\n", albumName), row.Wanted) << row.Name;
    }
    EXPECT_EQ(GetVisitorPageName("GET /ShowHelp", albumName), "");
}

TEST(ParseLoginForm, ReadsTheFieldsUndecodedAndNamesWhole) {
    const std::string head = "POST /SendLogin HTTP/1.0\r\n\r\n";
    const LoginForm form = ParseLoginForm(head + "username=A%41&password=p+q&args=1%26thumbs%261%26a%2Bb\r\n");
    EXPECT_EQ(form.Username, "A%41");
    EXPECT_EQ(form.Password, "p+q");
    EXPECT_EQ(form.Args, (Arguments{"1", "thumbs", "1", "a b"}));
    for (const char *body :
         {"", "username=a&password=b", "username=a&password=b&args=1", "username&args=1%262", "args=1%262&&"})
        EXPECT_THROW(ParseLoginForm(head + body), RunTimeError) << body;
    EXPECT_THROW(ParseLoginForm("POST /SendLogin HTTP/1.0"), RunTimeError);
}

TEST(Visitors, DownloadsCountOnceForEachAndInEachAlbum) {
    const std::tuple<const char *, int, const char *, bool> cases[] = {
        {"1", 1, "/x", true}, {"1", 1, "/x", false}, {"1", 2, "/x", true}, {"2", 1, "/x", true}, {"1", 1, "/y", true}};
    for (const auto &[ip, album, path, isNew] : cases) EXPECT_EQ(AddDownloadCookie(ip, album, path), isNew) << ip;
    gDownloadCookies.clear();
}

TEST(IsLoginAddress, WantsNumberViewAndPage) {
    EXPECT_TRUE(IsLoginAddress({"1", "thumbs", "1"}));
    for (const Arguments &args : {Arguments{}, Arguments{"x"}, Arguments{"1", "thumbs"}, Arguments{"x", "thumbs", "1"},
                                  Arguments{"1", "", "1"}, Arguments{"1", "thumbs", "x"}}) {
        EXPECT_FALSE(IsLoginAddress(args)) << Join(args, "&");
    }
}

}  // namespace
}  // namespace pixmora
