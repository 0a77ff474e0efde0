// A plain reader of INI files.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace pixmora {

/// The sections and keys of an INI file, read once. Both compare without regard to ASCII case; of two lines with the
/// same key the first counts, as do all sections of one name together. A line of no known form is passed over, whatever
/// its bytes.
class IniFile {
public:
    /// A file that isn't there or can't be read is an empty one.
    explicit IniFile(std::string_view path);

    /// What stands behind the "=", without blanks around it and without one pair of quotes; empty when there is no such
    /// key.
    std::string Value(std::string_view section, std::string_view key) const;

private:
    void AddLine(std::string_view line, std::string &section);

    std::unordered_map<std::string, std::string> values_;  ///< by section and key, see the source
};

}  // namespace pixmora
