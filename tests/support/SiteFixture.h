// A running site of a test's own: program folder, templates, database, settings and albums, with a clock that stands
// still.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/site/Globals.h"
#include "core/site/frmSystray.h"
#include "pages/clsWebServerCommands.h"
#include "platform/database/Database.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "support/Client.h"
#include "support/ProgramFolder.h"

namespace pixmora::test {

/// The value that a page put in the place of a placeholder of SiteFixture's templates. @param name without braces
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
inline int Count(std::string_view text, std::string_view part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

/// Its albums lie in the folder "albums" beside the program. Pages are asked through Answer; no core stands behind
/// them, so a connection closes with its first emptied buffer.
class SiteFixture : public testing::Test {
protected:
    using Operation = std::function<void(const Connection &)>;
    using Row = std::vector<std::pair<std::string, FieldValue>>;

    SiteFixture() {
        WriteTemplates();
        if (!OpenOrCreateDatabase()) throw std::runtime_error("no database");
        gDatabase->SetSynchronousFull(false);
        ResetGlobals();
        listener_->SetLocalPort(0);
        listener_->OnConnectionRequest = [this](int requestId) {
            accepted_ = Winsock::Create();
            accepted_->Index = 1;
            accepted_->Accept(requestId);
        };
        listener_->Listen();
    }
    ~SiteFixture() override {
        listener_->Close();
        gAlbums.clear();
        gWebServerCommands.reset();
        gSystray.reset();
        gPictureEngine.reset();
        gOnlineTimer.reset();
        gDatabase.reset();
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

    /// What a visitor gets from an operation. @param user logged in, or empty @param from the visitor's address
    /// @throws RunTimeError what the operation lets out
    std::string Answer(const Operation &operation, const std::string &user = "",
                       const std::string &from = "127.0.0.1") {
        accepted_.reset();
        Client client(listener_->LocalPort(), from);
        if (!TurnUntil([this] { return accepted_ != nullptr; })) throw std::runtime_error("no connection");
        const Connection socket = accepted_;
        socket->Tag = user;
        socket->OnSendComplete = [element = socket.get()] {
            element->Close();
        };
        operation(socket);
        return client.ReceiveAll();
    }

    ProgramFolder Program;  ///< holds htdocs, albums and the database too
    ClockSetForTest Clock{1000000, MakeDate(2004, 3, 10, 12, 0, 0)};

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

    static void ResetGlobals() {
        gAlbums.clear();
        gVisitors.clear();
        gDownloadCookies.clear();
        gSendStates = {};
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
        gSortMethod = gSortOrder = 0;
        gLastConversionTick = gLastCaptureTick = 0;
        gSystray = std::make_unique<frmSystray>();
        gPictureEngine = std::make_unique<PictureEngine>();
        gOnlineTimer = std::make_unique<clsTimer>();
        gOnlineTimer->StartTimer();
        gWebServerCommands = std::make_shared<clsWebServerCommands>();
    }

    std::shared_ptr<Winsock> listener_ = Winsock::Create();
    Connection accepted_;
};

}  // namespace pixmora::test
