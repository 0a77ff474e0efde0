// Paths, reading, and every way of changing files.
#include "platform/files/Files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/ErrorOf.h"
#include "support/FileSizeLimit.h"
#include "support/TempFolder.h"

namespace pixmora {

namespace {

using namespace std::string_literals;

constexpr ErrorNumber accessError = ErrorNumber::PathFileAccessError;

}  // namespace

TEST(Paths, TellWhatStandsThere) {
    const TempFolder folder;
    folder.Write("a/x.txt", "1");
    const std::string path = ProgramPath(folder.Path());
    EXPECT_EQ(SystemPath(path), folder.Path());
    for (const std::string &there : {path + "\\a\\x.txt", path + "\\a"}) EXPECT_TRUE(FileExists(there)) << there;
    for (const std::string &none : {path + "\\a\\", path + "\\a/", path + "\\A\\x.txt", path + "\\a\\x.txt\0"s, ""s})
        EXPECT_FALSE(FileExists(none)) << none;
    for (const std::string &there : {path + "\\\\a\\", path + "\\a\\\\", folder.Path() + "/a/", "\"" + path + "\\a\""})
        EXPECT_TRUE(PathExists(there)) << there;
    for (const std::string &none : {path + "\\b", ""s}) EXPECT_FALSE(PathExists(none)) << none;
    for (const std::string &none : {path + "\\a\\x.txt", path + "\\a\0"s}) EXPECT_FALSE(IsDirectory(none)) << none;
}

TEST(Walk, ListsByBytesAndFollowsLinks) {
    const TempFolder folder;
    for (const char *name : {"b.jpg", "B.jpg", "\xC3\xA9.jpg", "!.jpg", "a.jpg", "back\\slash.jpg", "\xFF.jpg"})
        folder.Write(name);
    folder.MakeFolder("a");
    ASSERT_EQ(symlink("a", folder.Path("to folder").c_str()), 0);
    ASSERT_EQ(symlink("a.jpg", folder.Path("to file").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", folder.Path("broken").c_str()), 0);

    std::string names;
    const Directory directory(ProgramPath(folder.Path()));
    for (const auto &[name, isDirectory] : directory.Entries()) names += name + (isDirectory ? "/|" : "|");
    EXPECT_EQ(names, "!.jpg|./|../|B.jpg|a/|a.jpg|b.jpg|to file|to folder/|\xC3\xA9.jpg|\xFF.jpg|");

    EXPECT_EQ(directory.Facts({".", true}).value().Inode, GetFileFacts(folder.Path()).Inode);
    DeleteFile(folder.Path("b.jpg"));
    EXPECT_FALSE(directory.Facts({"b.jpg", false}));
}

TEST(BinaryFiles, ReadInPiecesAndRefuseWhatIsNoFile) {
    const TempFolder folder;
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    const std::pair<std::string, ErrorNumber> others[] = {{folder.Path("none"), ErrorNumber::FileNotFound},
                                                          {folder.Write("x") + "/y", ErrorNumber::FileNotFound},
                                                          {folder.Path(), accessError},
                                                          {folder.Path("pipe"), accessError}};  // without a wait
    for (const auto &[path, error] : others) EXPECT_EQ(ErrorOf([&, at = path] { BinaryFile::OpenForRead(at); }), error);
    const auto file = BinaryFile::OpenForRead(folder.Write("bytes", "\0\xFF\r\n\x1A"s + std::string(3 << 20, 'x')));
    EXPECT_EQ(file->Read(5), "\0\xFF\r\n\x1A"s);
    EXPECT_EQ(file->ReadAll(), std::string(3 << 20, 'x'));
    EXPECT_EQ(ReadBinaryFile(folder.Path("new")), "");
    EXPECT_TRUE(FileExists(folder.Path("new"))) << "the binary open makes a missing file";
}

TEST(Changes, ReplaceAFileWholeOrNotAtAll) {
    const TempFolder folder;
    const std::string file = folder.Write("x\xFF", "old");
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    WriteFileAtomically(ProgramPath(file), "new\0bytes"s);
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
    {
        const FileSizeLimit limit(10);
        EXPECT_EQ(ErrorOf([&] { WriteFileAtomically(file, std::string(100, 'x')); }), ErrorNumber::DiskFull);
    }
    EXPECT_EQ(folder.Read("x\xFF"), "new\0bytes"s);
    EXPECT_EQ(Directory(folder.Path()).Entries().size(), 3U) << "nothing but the folders and the file is left";

    ASSERT_EQ(symlink("x\xFF", folder.Path("link").c_str()), 0);
    WriteFileAtomically(folder.Path("link"), "through");
    EXPECT_EQ(folder.Read("x\xFF"), "through") << "a link stays one";
    for (const std::string &path : {folder.Path(), folder.Path("none/x"), ""s})
        EXPECT_EQ(ErrorOf([&] { WriteFileAtomically(path, "x"); }), accessError) << path;
}

TEST(Changes, CopyATreeAndKeepWhatIsThere) {
    const TempFolder folder;
    folder.Write("from/a.txt", "a");
    folder.Write("from/sub/deep/b.txt", std::string(600000, 'b'));
    ASSERT_EQ(symlink("..", folder.Path("from/sub/up").c_str()), 0);
    folder.Write("to/a.txt", "mine");
    CopyDirectory(folder.Path("from"), folder.Path("to"));
    EXPECT_EQ(folder.Read("to/a.txt"), "mine");
    EXPECT_EQ(folder.Read("to/sub/deep/b.txt").size(), 600000u);
    EXPECT_FALSE(FileExists(folder.Path("to/sub/up"))) << "a link back up is not followed";

    CopyDirectory(folder.Path("from"), folder.Path("from/sub/copy"));
    EXPECT_EQ(folder.Read("from/sub/copy/a.txt"), "a") << "a copy into itself ends";
    EXPECT_THROW(CopyDirectory(folder.Path("none"), folder.Path("to")), RunTimeError);
    EXPECT_EQ(ErrorOf([&] { MakeDirectory(folder.Path("to/a.txt/x")); }), accessError);
}

}  // namespace pixmora
