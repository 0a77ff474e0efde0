// App.h: the pages' templates and the words that are shipped, in the program's folder: put there, and kept up to date.
#include <QCryptographicHash>
#include <filesystem>
#include <map>

#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora::App {

namespace {

namespace fs = std::filesystem;

/// What each file was like when it was shipped: SHA-256 by the path below the program's folder, with "/". Its text is
/// that of sha256sum(1).
using Sums = std::map<std::string, std::string>;

constexpr std::string_view exifWords = "exif.ini";
/// What was put into the program's folder. Before there was this file there was the first release.
constexpr std::string_view sumsFile = "shipped.sha256";
constexpr std::string_view firstReleaseSums = "release-1.0.0.sha256";

std::string SumOf(const std::string &path) {
    return QCryptographicHash::hash(QByteArray::fromStdString(BinaryFile::OpenForRead(path)->ReadAll()),
                                    QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

Sums ShippedSums() {
    Sums sums = {{std::string(exifWords), SumOf(ShippedPath(exifWords))}};
    const fs::path folder = SystemPath(ShippedPath("htdocs"));
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        sums["htdocs/" + entry.path().lexically_relative(folder).string()] = SumOf(ProgramPath(entry.path().string()));
    }
    return sums;
}

Sums ReadSums(const std::string &path) {
    constexpr std::size_t digits = 64;
    Sums sums;
    if (!FileExists(path)) return sums;
    for (const std::string &line : Split(BinaryFile::OpenForRead(path)->ReadAll(), "\n")) {
        if (line.size() > digits + 2) sums[line.substr(digits + 2)] = line.substr(0, digits);
    }
    return sums;
}

std::string OwnPath(std::string_view name) {
    return Concat(Path(), "\\", ProgramPath(name));
}

void WriteSums(const Sums &sums) {
    std::string text;
    for (const auto &[name, sum] : sums) Append(text, sum, "  ", name, "\n");
    WriteFileAtomically(OwnPath(sumsFile), text);
}

/// Puts the shipped form of a file in the place of the one that is there. @return whether the system let us
bool Renew(const std::string &name) {
    try {
        const std::string own = OwnPath(name);
        MakeDirectory(own.substr(0, own.rfind('\\')));
        CopyFile(ShippedPath(name), own);
        return true;
    } catch (const RunTimeError &error) {
        if (!error.IsStorageFailure()) throw;
        return false;
    }
}

/// Brings one file to its shipped form, if the owner has left it alone. @param known its sum when it was put there;
/// empty for a new one @param shipped its sum now @return whether it is as it should be, or an older form stays
bool BringUpToDate(const std::string &name, const std::string &known, const std::string &shipped) {
    const std::string own = OwnPath(name);
    if (!FileExists(own)) return !known.empty() || Renew(name);  // what the owner has removed stays away
    const std::string present = SumOf(own);
    if (present == shipped) return true;
    if (present == known) return Renew(name);
    return known == shipped;
}

}  // namespace

void InstallHtdocs() {
    const std::string installed = HtdocsPath();
    if (FileExists(installed)) return;
    const std::string source = ShippedPath("htdocs");
    if (!IsDirectory(source))
        throw RunTimeError(ErrorNumber::FileNotFound, "The program's htdocs folder is missing: " + SystemPath(source));
    if (!FileExists(OwnPath(exifWords))) CopyFile(ShippedPath(exifWords), OwnPath(exifWords));

    // The folder gets its name when it is whole; what an earlier, interrupted copy left is made anew.
    const std::string partial = Path() + "\\htdocs.part";
    std::error_code error;
    fs::remove_all(SystemPath(partial), error);
    CopyDirectory(source, partial);
    WriteSums(ShippedSums());
    fs::rename(SystemPath(partial), SystemPath(installed), error);
    if (error) throw RunTimeError(ErrorNumber::PathFileAccessError);
}

std::vector<std::string> UpdateShippedFiles() {
    std::vector<std::string> older;
    if (!IsDirectory(ShippedPath("htdocs"))) return older;
    const std::string list = OwnPath(sumsFile);
    const Sums known = ReadSums(FileExists(list) ? list : ShippedPath(firstReleaseSums));
    const Sums shipped = ShippedSums();
    for (const auto &[name, sum] : shipped) {
        const auto former = known.find(name);
        if (!BringUpToDate(name, former == known.end() ? "" : former->second, sum)) older.push_back(name);
    }
    // The owner is told of each form once.
    if (known != shipped || !FileExists(list)) WriteSums(shipped);
    return older;
}

}  // namespace pixmora::App
