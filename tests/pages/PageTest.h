// A started site whose pages are asked for as a browser does it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/site/Response.h"
#include "platform/runtime/Text.h"
#include "store/Schema.h"
#include "support/RawDatabase.h"
#include "support/RunningSite.h"

namespace pixmora::test {

/// The answer behind its head.
inline std::string Body(const std::string &answer) {
    const std::size_t end = answer.find("\r\n\r\n");
    return end == std::string::npos ? "(no head)" : answer.substr(end + 4);
}

/// How often the part occurs.
inline int Count(const std::string &text, std::string_view part) {
    return static_cast<int>(Split(text, part).size()) - 1;
}

/// Fails for each part that the page doesn't hold; for one behind a "!", when it does.
inline void ExpectParts(const std::string &page, const std::vector<std::string> &parts) {
    for (const std::string &part : parts) {
        const bool isThere = !part.starts_with('!');
        EXPECT_EQ(Contains(page, part.substr(isThere ? 0 : 1)), isThere) << part << "\n" << page;
    }
}

class PageTest : public RunningSite {
protected:
    /// Writes a file of the album "A".
    void AddFile(const std::string &path, std::string_view bytes = "x") const {
        Program.Write("albums/A/" + path, bytes);
    }
    /// Starts with the album "A". What the album shows is the test's to change; its own asking counts as no visit.
    clsAlbum &StartAlbum() {
        AddAlbum("A");
        Start();
        gVisitors = {{GetTickCount(), GetTickCount(), "127.0.0.1", ""}};
        return *gAlbums.front();
    }
    /// The rows that a statement gives, as RunSql has them.
    static std::string Ask(const std::string &sql) { return RunSql(SystemPath(DatabasePath(9)), sql); }
};

}  // namespace pixmora::test
