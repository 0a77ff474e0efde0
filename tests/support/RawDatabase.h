// A database file as any other program of the engine sees it.
#pragma once

#include <sqlite3.h>

#include <stdexcept>
#include <string>

namespace pixmora {

/// Runs SQL on the file of that system path, which is made when it isn't there. The result's rows are lines, their
/// columns separated by "|", a Null column is empty.
inline std::string RunSql(const std::string &path, const std::string &sql) {
    std::string lines;
    const auto addLine = [](void *target, int columns, char **values, char **) {
        auto &text = *static_cast<std::string *>(target);
        for (int i = 0; i < columns; ++i)
            text += std::string(i == 0 ? "" : "|") + (values[i] == nullptr ? "" : values[i]);
        text += '\n';
        return 0;
    };
    sqlite3 *handle = nullptr;
    sqlite3_open(path.c_str(), &handle);
    sqlite3_exec(handle, sql.c_str(), addLine, &lines, nullptr);
    const int result = sqlite3_errcode(handle);
    const std::string message = sqlite3_errmsg(handle);
    sqlite3_close(handle);
    if (result != SQLITE_OK) throw std::runtime_error(message);
    return lines;
}

}  // namespace pixmora
