// The registry: the tree in memory, kept in step with its file.
#include "platform/registry/Registry.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QStandardPaths>
#include <algorithm>
#include <functional>
#include <optional>

#include "platform/files/FileLock.h"
#include "platform/files/Files.h"
#include "platform/registry/RegistryFile.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Sleep.h"
#include "platform/runtime/Text.h"

namespace pixmora::Registry {

namespace {

/// What tells one state of the file from another. All 0 for a file that isn't there.
struct FileStamp {
    std::int64_t Seconds = 0;
    std::int64_t Nanoseconds = 0;
    std::int64_t Size = 0;
    std::uint64_t Inode = 0;
    bool operator==(const FileStamp &) const = default;
};

FileStamp StampOf(const std::string &path) {
    struct stat facts {};
    if (stat(path.c_str(), &facts) != 0) return {};
    return {facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec, facts.st_size, facts.st_ino};
}

/// What was last read of which file.
struct Memory {
    std::string FilePath;
    std::optional<FileStamp> Stamp;  ///< none before the first read and after each write
    Tree Content;
    bool HasWaitedInVain = false;  ///< for the lock, the last time
};

Memory &Kept() {
    static Memory memory;
    return memory;
}

FileLock &StoreLock() {
    static FileLock lock;
    return lock;
}

/// The tree as the file has it now. A file that is there but can't be read is an error, not an empty tree: the next
/// save would otherwise empty it.
Tree &Current() {
    Memory &memory = Kept();
    const std::string path = FilePath();
    const FileStamp stamp = StampOf(path);
    if (memory.Stamp != stamp) {
        memory.Stamp.reset();
        memory.Content = stamp == FileStamp() ? Tree() : ReadTree(BinaryFile::OpenForRead(path)->ReadAll());
        memory.Stamp = stamp;
    }
    return memory.Content;
}

constexpr Tick longestLockWait = 150;  // ms; visitors wait meanwhile
constexpr int pauseBetweenTries = 5;

/// Keeps other processes from writing the file, by a lock on its folder. A writer of this program has it for a few ms.
/// Who has it for longer is none, and must not stop the site: the change is made without the lock then, and nobody
/// waits again until it was free.
class WriteLock {
public:
    explicit WriteLock(const std::string &folder)
        : descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        bool &hasWaitedInVain = Kept().HasWaitedInVain;
        const Tick begun = GetTickCount();
        while (descriptor_ >= 0 && flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
            hasWaitedInVain |= TicksBetween(begun, GetTickCount()) >= longestLockWait;
            if (hasWaitedInVain) return;
            Sleep(pauseBetweenTries);
        }
        hasWaitedInVain = false;
    }
    ~WriteLock() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    WriteLock(const WriteLock &) = delete;
    WriteLock &operator=(const WriteLock &) = delete;

private:
    int descriptor_;
};

/// Makes a change on the newest state and puts it on the disk.
void Change(const std::function<void(Tree &)> &change) {
    const std::string path = FilePath();
    const std::string folder = path.substr(0, path.rfind('/'));
    MakeDirectory(folder);
    const WriteLock lock(folder);
    Tree tree = Current();
    change(tree);
    // Another process may write as soon as the lock is gone, so the next call reads the file anew.
    Kept().Stamp.reset();
    WriteFileAtomically(path, WriteTree(tree), Readers::OwnerOnly);
}

/// The whole path, short root first, without empty parts.
std::string WholePath(Root root, std::string_view path) {
    std::string whole = root == Root::CurrentUser ? "HKCU" : "HKLM";
    for (const std::string &part : Split(path, "\\")) {
        if (!part.empty()) whole += "\\" + part;
    }
    return whole;
}

bool IsBelow(const Key &key, const std::string &foldedParent) {
    return key.Folded.size() > foldedParent.size() + 1 && key.Folded.starts_with(foldedParent) &&
           key.Folded[foldedParent.size()] == '\\';
}

/// Whether the key is there by itself or by one below it.
bool IsThere(const Tree &tree, const std::string &folded) {
    for (const Key &key : tree.Keys) {
        if (key.Folded == folded || IsBelow(key, folded)) return true;
    }
    return false;
}

}  // namespace

bool KeyExists(Root root, std::string_view path) {
    return IsThere(Current(), LCase(WholePath(root, path)));
}

void CreateKey(Root root, std::string_view path) {
    if (Current().Find(WholePath(root, path)) != nullptr) return;
    Change([&](Tree &tree) { tree.FindOrAdd(WholePath(root, path)); });
}

void DeleteKey(Root root, std::string_view path) {
    if (!KeyExists(root, path)) return;
    const std::string whole = WholePath(root, path);
    const std::string folded = LCase(whole);
    Change([&](Tree &tree) {
        std::erase_if(tree.Keys, [&](const Key &key) { return key.Folded == folded || IsBelow(key, folded); });
        // A key outlives the last one below it.
        const std::size_t parentSize = whole.rfind('\\');
        if (parentSize == std::string::npos) return;
        const std::string parent = whole.substr(0, parentSize);
        if (!IsThere(tree, LCase(parent))) tree.FindOrAdd(parent);
    });
}

std::vector<std::string> EnumKeys(Root root, std::string_view path) {
    const std::string parent = LCase(WholePath(root, path));
    std::vector<std::string> names;
    for (const Key &key : Current().Keys) {
        if (!IsBelow(key, parent)) continue;
        const std::size_t start = parent.size() + 1;
        const std::string name = key.Path.substr(start, key.Path.find('\\', start) - start);
        const auto isSame = [&](const std::string &other) {
            return EqualsIgnoreCase(other, name);
        };
        if (std::none_of(names.begin(), names.end(), isSame)) names.push_back(name);
    }
    return names;
}

std::vector<std::pair<std::string, Value>> EnumValues(Root root, std::string_view path) {
    std::vector<std::pair<std::string, Value>> values;
    const Key *key = Current().Find(WholePath(root, path));
    if (key == nullptr) return values;
    for (const Entry &entry : key->Entries) {
        if (entry.IsValue) values.emplace_back(entry.Name, entry.Data);
    }
    return values;
}

bool ValueExists(Root root, std::string_view path, std::string_view name) {
    Key *key = Current().Find(WholePath(root, path));
    return key != nullptr && FindValue(*key, name) != nullptr;
}

Value GetValue(Root root, std::string_view path, std::string_view name, const Value &fallback) {
    Key *key = Current().Find(WholePath(root, path));
    const Entry *entry = key == nullptr ? nullptr : FindValue(*key, name);
    return entry == nullptr ? fallback : entry->Data;
}

void SetValue(Root root, std::string_view path, std::string_view name, const Value &value) {
    // A value that is there already costs no write.
    if (ValueExists(root, path, name) && GetValue(root, path, name) == value) return;
    Change([&](Tree &tree) { SetValue(tree.FindOrAdd(WholePath(root, path)), name, value); });
}

void DeleteValue(Root root, std::string_view path, std::string_view name) {
    if (!ValueExists(root, path, name)) return;
    Change([&](Tree &tree) {
        Key *key = tree.Find(WholePath(root, path));
        if (key == nullptr) return;
        std::erase_if(key->Entries,
                      [&](const Entry &entry) { return entry.IsValue && CompareTexts(entry.Name, name) == 0; });
    });
}

std::string ConfigFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString();
}

std::string FilePath() {
    std::string &path = Kept().FilePath;
    if (path.empty()) path = ConfigFolder() + "/pixmora/settings.ini";
    return path;
}

bool PrevInstance() {
    const std::string folder = FilePath().substr(0, FilePath().rfind('/'));
    MakeDirectory(folder);
    return !StoreLock().Take(folder + "/settings.lock");
}

void SetFilePath(std::string_view path) {
    StoreLock().Release();
    Kept() = Memory{SystemPath(path), {}, {}, {}};
}

}  // namespace pixmora::Registry

namespace pixmora {

namespace {

std::string SettingsPath(std::string_view app, std::string_view section) {
    return std::string(SettingsKey) + "\\" + std::string(app) + "\\" + std::string(section);
}

}  // namespace

std::string GetSetting(std::string_view app, std::string_view section, std::string_view key,
                       std::string_view fallback) {
    const Registry::Value value =
        Registry::GetValue(Registry::Root::CurrentUser, SettingsPath(app, section), key, std::string(fallback));
    if (const auto *number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
    return std::get<std::string>(value);
}

void SaveSetting(std::string_view app, std::string_view section, std::string_view key, std::string_view value) {
    Registry::SetValue(Registry::Root::CurrentUser, SettingsPath(app, section), key, std::string(value));
}

void DeleteSetting(std::string_view app, std::string_view section, std::string_view key) {
    Registry::DeleteValue(Registry::Root::CurrentUser, SettingsPath(app, section), key);
}

}  // namespace pixmora
