// Events that come while the disk, the file or another program's lock refuses them.
#include "store/RecordKeeping.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/runtime/Clock.h"
#include "store/Popularity.h"
#include "store/Statistics.h"
#include "support/ErrorOf.h"
#include "support/OpenStore.h"
#include "support/RawDatabase.h"

namespace pixmora {

namespace {

/// Another program that holds the write lock for its life.
class OtherWriter {
public:
    explicit OtherWriter(const std::string &path) {
        sqlite3_open(path.c_str(), &handle_);
        sqlite3_exec(handle_, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
    }
    ~OtherWriter() { sqlite3_close(handle_); }
    OtherWriter(const OtherWriter &) = delete;
    OtherWriter &operator=(const OtherWriter &) = delete;

private:
    sqlite3 *handle_ = nullptr;
};

class RecordKeepingTest : public testing::Test {
protected:
    RecordKeepingTest() {
        gDatabase->SetLockWait(1);
        SetRecordTeller([this](const std::string &text) { told.push_back(text); });
    }
    ~RecordKeepingTest() override { SetRecordTeller({}); }

    static void CountEvents() {
        RecordStat(Stat::Thumbs, "Zoo", 1);
        CountFileVisit("Zoo", "\\lion.jpg");
        CountDirVisit("Zoo", "");
    }
    OpenStore store;
    ClockSetForTest clock{5000000, MakeDate(2004, 3, 1, 12, 0, 0)};
    std::vector<std::string> told;
};

}  // namespace

TEST_F(RecordKeepingTest, GoesOnWithoutWhileAnotherProgramHoldsTheFile) {
    CountEvents();
    auto other = std::make_unique<OtherWriter>(store.FilePath());
    CountEvents();
    CountEvents();
    const std::string first =
        "Unable to save what your visitors see and download: database is locked! Your website goes on without.";
    EXPECT_EQ(told, std::vector<std::string>{first}) << "once, not once for each event";
    EXPECT_EQ(ReadStatTotal(Stat::Thumbs), 1) << "what was kept before can be read";
    clock.Advance(60000);
    CountEvents();
    EXPECT_EQ(told.size(), 2U) << "and once more in the next minute";
    EXPECT_EQ(ErrorOf([] { RecordStat(Stat::Thumbs, "It's", 1); }), ErrorNumber::SyntaxError) << "a mistake stays one";
    other.reset();
    CountEvents();
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told.back(), "Able to save what your visitors see and download again. Lost meanwhile: 9.");
    EXPECT_EQ(ReadStatTotal(Stat::Thumbs), 2);
    EXPECT_EQ(RunSql(store.FilePath(), "SELECT FileCount, (SELECT DirCount FROM PopularDirs) FROM PopularFiles"),
              "2|2\n");
}

}  // namespace pixmora
