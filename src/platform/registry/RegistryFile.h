// The registry's file: its text form, and the tree of keys that it holds. For Registry.cpp only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/registry/Registry.h"

namespace pixmora::Registry {

/// One line of a key: a value, or what a hand has written that is none, which stays as it is.
struct Entry {
    std::string Name;
    Value Data;
    std::string Remark;  ///< the line of a comment or a damaged one; a value has none
    bool IsValue = true;
};

/// A key and its lines, in the file's order.
struct Key {
    std::string Path;    ///< the whole path, short root first, in the first writer's spelling
    std::string Folded;  ///< the same in lower case: the identity
    std::vector<Entry> Entries;
};

/// The whole file: the lines before its first key, and the keys in their order.
struct Tree {
    std::vector<std::string> Preamble;
    std::vector<Key> Keys;

    Key *Find(std::string_view path);
    Key &FindOrAdd(std::string_view path);
};

Entry *FindValue(Key &key, std::string_view name);
void SetValue(Key &key, std::string_view name, const Value &value);

/// Reads the text of a file; no text fails. Keys of one name become one, and of two values of one name the later
/// counts.
///
///     [HKCU\Software\Program\Section]      a key: short root and path
///     Name=text                            a string
///     Name=dword:15                        a double word
///
/// "%" and two hexadecimal digits are a byte that can't stand in its place: control characters, blanks at the ends, "="
/// in a name and the like. Any other "%" is itself.
Tree ReadTree(std::string_view text);
std::string WriteTree(const Tree &tree);

}  // namespace pixmora::Registry
