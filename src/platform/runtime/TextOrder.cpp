// Text.h: texts compared as people read them, in every language.
#include <QString>
#include <algorithm>

#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

/// A text in one case. Bytes that are no UTF-8 are taken for characters of their own.
struct Folded {
    explicit Folded(std::string_view text) : Text(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))) {
        IsUtf8 = !Text.contains(QChar::ReplacementCharacter);
        if (!IsUtf8) Text = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
        Text = Text.toCaseFolded();
    }

    /// Without accents and the like, which decide only between texts that are the same without them.
    QString BareLetters() const {
        QString letters = Text.normalized(QString::NormalizationForm_D);
        letters.removeIf([](QChar character) { return character.category() == QChar::Mark_NonSpacing; });
        return letters;
    }

    QString Text;
    bool IsUtf8;
};

bool IsAscii(char c) {
    return static_cast<signed char>(c) >= 0;
}

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return IsAscii(c); });
}

int CompareFolded(std::string_view left, std::string_view right) {
    const Folded first(left);
    const Folded second(right);
    if (const int order = first.BareLetters().compare(second.BareLetters()); order != 0) return order;
    if (const int order = first.Text.compare(second.Text); order != 0) return order;
    return static_cast<int>(second.IsUtf8) - static_cast<int>(first.IsUtf8);
}

}  // namespace

int CompareTexts(std::string_view left, std::string_view right) {
    // Most texts are the same or differ before any other letter, and a search compares thousands.
    const std::size_t shorter = std::min(left.size(), right.size());
    std::size_t i = static_cast<std::size_t>(std::mismatch(left.begin(), left.begin() + shorter, right.begin()).first -
                                             left.begin());
    while (i < shorter && IsAscii(left[i]) && IsAscii(right[i])) {
        if (const int difference = LowerOf(left[i]) - LowerOf(right[i]); difference != 0) return difference;
        ++i;
    }
    const bool isOver = i == shorter && IsAscii(left.substr(i)) && IsAscii(right.substr(i));
    if (!isOver) return CompareFolded(left, right);
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

std::string FoldedText(std::string_view text) {
    if (IsAscii(text)) return LCase(text);
    const Folded folded(text);
    return (folded.IsUtf8 ? "" : "\xFF") + folded.Text.toStdString();
}

}  // namespace pixmora
