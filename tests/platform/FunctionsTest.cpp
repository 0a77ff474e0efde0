// The functions of texts alone: numbers, dates, fields, wildcards, encodings, paths and hosts, by the rows of
// functions.tsv.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "platform/database/FieldTypes.h"
#include "platform/files/Files.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Encoding.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "platform/sockets/Hosts.h"

namespace pixmora {

namespace {

std::string Answer(bool isSo) {
    return isSo ? "yes" : "no";
}

/// How people sort the two; texts that are the same fold to the same.
std::string OrderOf(const std::string &left, const std::string &right) {
    const int order = CompareTexts(left, right);
    if ((order == 0) != (FoldedText(left) == FoldedText(right))) return "folds otherwise";
    return order < 0 ? "before" : order > 0 ? "behind" : "same";
}

std::string LocalTimeText(std::int64_t unixSeconds, const std::string &zone) {
    setenv("TZ", zone.c_str(), 1);
    tzset();
    const std::string text = DateText(LocalTime(unixSeconds));
    setenv("TZ", "UTC", 1);
    tzset();
    return text;
}

/// @param other the second argument of a function that has one
std::string ResultOf(const std::string &function, const std::string &text, const std::string &other) {
    if (function == "AddDays") return DateText(AddDays(ParseDate(text), CLng(other)));
    if (function == "AddLong") return std::to_string(AddLong(CLng(text), CLng(other)));
    if (function == "CInt") return std::to_string(CInt(text));
    if (function == "CLng") return std::to_string(CLng(text));
    if (function == "CompareTexts") return OrderOf(text, other);
    if (function == "DateDiffDays") return std::to_string(DateDiffDays(ParseDate(text), ParseDate(other)));
    if (function == "DateText") return DateText(ParseDate(text));
    if (function == "FormatByteSize") return FormatByteSize(CDbl(text));
    if (function == "FormatElapsed") return FormatElapsed(CDbl(text), other == "days", other == "seconds");
    if (function == "FormatFixed") return FormatFixed(CDbl(text), CLng(other));
    if (function == "FormatGrouped") return FormatGrouped(CDbl(text));
    if (function == "FormatPadded") return FormatPadded(CLng(text), CLng(other));
    if (function == "HasBadFileChars") return Answer(HasBadFileChars(text));
    if (function == "HasForbiddenPart") return Answer(HasForbiddenPart(text));
    if (function == "HostIn") return HostIn(text);
    if (function == "IsNumeric") return Answer(IsNumeric(text));
    if (function == "IsPrivateAddress") return Answer(IsPrivateAddress(text));
    if (function == "IsUtf8") return Answer(IsUtf8(text));
    if (function == "IsoDate") return IsoDate(ParseDate(text));
    if (function == "LastPathPart") return LastPathPart(text);
    if (function == "Like") return Answer(Like(text, other));
    if (function == "LocalTime") return LocalTimeText(static_cast<std::int64_t>(CDbl(text)), other);
    if (function == "LongDate") return LongDate(ParseDate(text));
    if (function == "MultiplyLong") return std::to_string(MultiplyLong(CLng(text), CLng(other)));
    if (function == "NumberText") return NumberText(CDbl(text));
    if (function == "ParentPath") return ParentPath(text);
    if (function == "PathMatchSpec") return Answer(PathMatchSpec(text, other));
    if (function == "RoundUpTo") return NumberText(RoundUpTo(CDbl(text), CLng(other)));
    if (function == "StoredValue") return AsText(StoredValue(TypeOfDeclaration(other), text));
    if (function == "Val") return NumberText(Val(text));
    if (function == "WebAddressFrom") return WebAddressFrom(text, CLng(other));
    if (function == "WithoutByteOrderMark") return WithoutByteOrderMark(text);
    return "no such function";
}

/// A table's column, in which "%" and two hexadecimal digits stand for a byte.
std::string Column(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bytes += text[i] == '%' ? ByteOfDigits(text.substr(i + 1, 2)).value() : text[i];
        if (text[i] == '%') i += 2;
    }
    return bytes;
}

}  // namespace

TEST(Functions, GiveWhatTheTableSays) {
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "functions.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with('#')) continue;
        const std::vector<std::string> row = Split(line, "\t");
        ASSERT_EQ(row.size(), 4U) << line;
        std::string outcome;
        try {
            outcome = ResultOf(row[0], Column(row[1]), Column(row[2]));
        } catch (const RunTimeError &error) {
            outcome = error.Message();
        }
        EXPECT_EQ(outcome, Column(row[3])) << line;
        ++rows;
    }
    EXPECT_GE(rows, 220);
}

}  // namespace pixmora
