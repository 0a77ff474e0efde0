// A site whose pages show what they put into their templates, asked for by their addresses as a browser does it.
#pragma once

#include <QByteArray>
#include <filesystem>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/site/RequestGrammar.h"
#include "core/site/Response.h"
#include "pages/clsWebServerCommands.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Text.h"
#include "store/Schema.h"
#include "support/RunningSite.h"

namespace pixmora::test {

/// The value that a page put in the place of a placeholder of PageSite's templates. @param name without braces
inline std::string Filled(const std::string &page, const std::string &name) {
    const std::string opening = "[" + name + ":";
    const std::string end = ":" + name + "]";
    const std::size_t start = page.find(opening);
    const std::size_t stop = page.find(end, start);
    if (start == std::string::npos || stop == std::string::npos) return "(no " + name + " in the page)";
    return page.substr(start + opening.size(), stop - start - opening.size());
}

/// The answer behind its head.
inline std::string Body(const std::string &answer) {
    const std::size_t end = answer.find("\r\n\r\n");
    return end == std::string::npos ? "(no head)" : answer.substr(end + 4);
}

/// How often the part occurs.
inline int Count(const std::string &text, std::string_view part) {
    return static_cast<int>(Split(text, part).size()) - 1;
}

/// The values of the page's href and src attributes and of its scripts' location.href, in the page's order. Graphics of
/// htdocs are left out.
inline std::vector<std::string> Links(const std::string &page) {
    static const std::regex link(R"re((?:href|src)="((?!ShowGraphic)[^"]*)"|location\.href='(.*?)';)re");
    std::vector<std::string> links;
    for (std::sregex_iterator at(page.begin(), page.end(), link), end; at != end; ++at)
        links.push_back((*at)[1].matched ? (*at)[1].str() : Replace((*at)[2], "\\'", "'"));
    return links;
}

/// Serves without the steps of a start; its albums are the test's to change, in the folder "albums" beside the program.
class PageSite : public RunningSite {
protected:
    using Row = std::vector<std::pair<std::string, FieldValue>>;

    PageSite() {
        WriteTemplates();
        gDatabase->SetSynchronousFull(false);
        gVisitors = {{GetTickCount(), GetTickCount(), "127.0.0.1", ""}};  // so that the asking itself counts nothing
        gRestrictedWords = {"Private*", "Censored"};
        gVisitorsActive = gConnectionsSession = gThumbsSession = gDownloadsSession = 0;
        gBandwidthSession = gRunningTotal = gConnectionsTotal = gThumbsTotal = gDownloadsTotal = gBandwidthTotal = 0;
        gStyleSheet = ".style {}";
        gServerTitle = "Anna's Site";
        gAuthor = "Anna O'Neil";
        gWelcomeText = "Welcome!";
        gWebsiteAddress = "http://192.0.2.1:8080";
        gFilesPerRow = 3;
        gFilesPerPage = 12;
        gThumbSize = 150;
        gPreviewSize = 375;
        gSlideshowSize = 300;
        gThumbQuality = gPreviewQuality = gSlideshowQuality = 0;
        gSortMethod = gSortOrder = gLastCaptureTick = 0;
        gOnlineTimer->StartTimer();
        gWebServerCommands = std::make_shared<clsWebServerCommands>();
        gSystray->wnskListen->Listen();
    }

    /// An album that takes in everything and features nothing, with an empty folder; its fields are the test's to
    /// change.
    clsAlbum &AddAlbum(const std::string &name) {
        const auto album = std::make_shared<clsAlbum>();
        album->ID = static_cast<std::int16_t>(gAlbums.size() + 1);
        album->Name = name;
        album->Directory = ProgramPath(Program.MakeFolder("albums/" + name));
        album->DateCreated = "March 1, 2004";
        album->DateUpdated = ShortDate(Today());
        album->SubDirectories = album->ShowMovies = album->ShowPictures = 1;
        gAlbums.push_back(album);
        SaveSetting("AlbumIDs", name, std::to_string(album->ID));
        return *album;
    }
    /// Writes a file into an album's folder. @param path in the system's form, "a/b.jpg"
    std::string AddFile(const clsAlbum &album, const std::string &path, std::string_view bytes = "x") const {
        return Program.Write("albums/" + album.Name + "/" + path, bytes);
    }
    void AddDirectory(const clsAlbum &album, const std::string &path) const {
        Program.MakeFolder("albums/" + album.Name + "/" + path);
    }

    void AddRow(std::string_view table, const Row &row) const {
        const auto records = gDatabase->OpenRecordset(table, RecordsetType::Dynaset);
        records->AddNew();
        for (const auto &[field, value] : row) records->Set(field, value);
        records->Update();
    }
    void AddUser(const std::string &name, bool isAdmin) const {
        AddRow("Users", {{"Username", name}, {"Password", "pass"}, {"Admin", isAdmin}});
    }
    /// @param directory as stored: "\" or "\a\b", "%34" for an apostrophe
    void Protect(const clsAlbum &album, const std::string &directory, const std::string &user = "nobody") const {
        AddRow("PrivateDirs", {{"AlbumName", album.Name}, {"SubDir", directory}, {"Username", user}});
    }
    /// A field of each row of a table or statement, as text, "|" between them.
    std::string Column(std::string_view source, std::string_view field) const {
        std::vector<std::string> values;
        const auto records = gDatabase->OpenRecordset(source, RecordsetType::Snapshot);
        for (; !records->Eof(); records->MoveNext()) values.push_back(AsText(records->Value(field)));
        return Join(values, "|");
    }

    /// The answer to an address. @param user logged in, or empty @param from the visitor's address
    std::string Get(std::string_view address, const std::string &user = "",
                    const std::string &from = "127.0.0.1") const {
        const std::string cookie = user.empty() ? "" : "Cookie: ms_username=" + user + "; a=b\r\n";
        return RunningSite::Get("/" + Escaped(address), cookie, from);
    }

private:
    /// Leaves of each shipped template its placeholders, as "[NAME:{NAME}:NAME]".
    void WriteTemplates() const {
        const std::regex placeholder(R"(\{([A-Z_]+)\})");
        const auto htdocs = std::filesystem::path(__FILE__).parent_path() / "../../htdocs";
        for (const auto &entry : std::filesystem::directory_iterator(htdocs)) {
            const std::string page = entry.path().stem().string();
            if (entry.path().extension() != ".tpl" || page.starts_with("StyleSheet")) continue;
            const std::string shipped = ReadBinaryFile(entry.path().string());
            std::set<std::string> names;
            for (std::sregex_iterator at(shipped.begin(), shipped.end(), placeholder), end; at != end; ++at)
                names.insert((*at)[1]);
            std::string text = page + "\n";
            for (const std::string &name : names) text += "[" + name + ":{" + name + "}:" + name + "]\n";
            Program.Write("htdocs/" + page + ".tpl", text);
        }
    }

    /// The bytes that no address may hold as the escapes that a browser makes of them.
    static std::string Escaped(std::string_view address) {
        return QByteArray::fromRawData(address.data(), static_cast<int>(address.size()))
            .toPercentEncoding("!\"#$%&'()*+,/:;=?@[\\]^`{|}")
            .toStdString();
    }
};

}  // namespace pixmora::test
