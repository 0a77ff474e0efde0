// What the programs answer to their command line.
#pragma once

#include <optional>

namespace pixmora {

/// Answers a first word of "--help" (how the program is called) or "--version" on standard output.
/// @return the exit status, or nothing where neither was asked for
std::optional<int> AnswerQuestion(int argc, char **argv, const char *usage);

/// Tells on standard error how the program is called. @return the exit status for a word that it doesn't know
int RefuseWords(const char *usage);

}  // namespace pixmora
