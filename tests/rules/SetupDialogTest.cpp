// What the setup dialog decides: Finish, Cancel, its lists and texts.
#include "setup/rules/SetupDialog.h"

#include "platform/runtime/Text.h"
#include "setup/rules/Autostart.h"
#include "setup/rules/HelpTexts.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

const std::string firewallQuestion = "You haven't run the Firewall Check yet!...";

class SetupDialog : public SetupFixture {
protected:
    SetupDialog() { fields.ServiceBase = "http://service.example"; }

    bool Finish() {
        SetupHands hands;
        hands.CountAlbums = Give(albums);
        hands.IsRunOnStartTicked = [this] {
            return fields.RunOnStart == "1";
        };
        hands.TickRunOnStart = [this] {
            fields.RunOnStart = "1";
        };
        hands.RunFirewallCheck = [this] {
            did += "check ";
            return !isClosedByCheck;
        };
        hands.CreateAlbum = [this] {
            did += "create ";
        };
        hands.Fields = Give(fields);
        return FinishSetup(hands, "/opt/pixmora");
    }
    static std::string Stored(const char *key) { return GetSetting("Setup", key, "(none)"); }

    SetupFields fields = LoadSetupFields();
    int albums = 2;
    bool isClosedByCheck = false;
    std::string did;
};

TEST_F(SetupDialog, TheFirstFinishRemindsOfEverythingInOrder) {
    fields.RunOnStart = "1";
    isClosedByCheck = true;
    Owner.ExpectMessage(firewallQuestion, CriticalQuestion, AnswerYes);
    EXPECT_FALSE(Finish());
    EXPECT_EQ(Stored("ServerTitle"), "(none)") << "a check that outlives the dialog saves nothing";
    isClosedByCheck = false;
    DeleteSetting("Records", "FirewallCheckWarning");
    fields.RunOnStart = "0";
    Owner.ExpectMessage("You have decided not to run Pixmora! when Windows starts!...", CriticalQuestion, AnswerYes);
    Owner.ExpectMessage(firewallQuestion, CriticalQuestion, AnswerYes);
    Owner.ExpectMessage("Just as a reminder, you can edit your albums or add more...", FlagInformation);
    EXPECT_TRUE(Finish());
    EXPECT_EQ(did, "check check ");
    EXPECT_EQ(Stored("RunOnStart") + Stored("RunSetup"), "11");
    EXPECT_EQ(GetSetting("Records", "CreatedAlbum"), "1");
    EXPECT_EQ(Program.Read("config/autostart/pixmora.desktop"), AutostartEntry("/opt/pixmora"));

    fields.RunOnStart = "0";
    EXPECT_TRUE(Finish()) << "no reminder comes twice";
    EXPECT_EQ(Program.Read("config/autostart/pixmora.desktop"), "");
}

TEST_F(SetupDialog, WithoutAlbumsTheOwnerMayCreateOneFirst) {
    fields.ServiceBase = "";
    fields.RunOnStart = "1";
    albums = 0;
    for (const int answer : {AnswerYes, AnswerNo}) {
        Owner.ExpectMessage("You don't have any albums setup!...", CriticalQuestion, answer);
        EXPECT_EQ(Finish(), answer == AnswerNo);
        EXPECT_EQ(did, "create ");
        EXPECT_EQ(IsFirstRun(), answer == AnswerYes) << "nothing is saved before";
    }
    EXPECT_EQ(GetSetting("Records", "CreatedAlbum"), "");
    EXPECT_EQ(GetSetting("Records", "FirewallCheckWarning"), "") << "without a service no check is offered";
}

TEST_F(SetupDialog, WhatIsNoPortAddressOrWishIsNotStored) {
    const std::string badPort = "Invalid Port! Valid ranges are 1 to 65000! Reverting to original value...";
    const std::string badAddress =
        "Invalid Public Address! Enter a host, host:port or web address. Reverting to original value...";
    using Field = std::string SetupFields::*;
    const std::tuple<const char *, Field, std::string, std::string, std::string> rows[] = {
        // key, field, what is typed, what is stored then, what the owner is told
        {"ListenPort", &SetupFields::ListenPort, "1", "1", ""},
        {"ListenPort", &SetupFields::ListenPort, "65000", "65000", ""},
        {"ListenPort", &SetupFields::ListenPort, "8080x", "8080x", ""},
        {"ListenPort", &SetupFields::ListenPort, "0", "8080x", badPort},
        {"ListenPort", &SetupFields::ListenPort, "65001", "8080x", badPort},
        {"ListenPort", &SetupFields::ListenPort, "abc", "8080x", badPort},
        {"PublicAddress", &SetupFields::PublicAddress, "photos.example:8080", "photos.example:8080", ""},
        {"PublicAddress", &SetupFields::PublicAddress, "my <photos>", "photos.example:8080", badAddress},
        {"Style", &SetupFields::Style, "", "Default", ""},
        {"MoreTypes", &SetupFields::MoreTypes, "1", "1", ""},
        {"MoreTypes", &SetupFields::MoreTypes, "0", "(none)", ""},
        {"BrowserCache", &SetupFields::BrowserCache, " 90 ", "90", ""},
        {"BrowserCache", &SetupFields::BrowserCache, "-5", "(none)", ""},
        {"BrowserCache", &SetupFields::BrowserCache, "soon", "(none)", ""},
        {"FilesPerPage", &SetupFields::FilesPerPage, AllFiles, "0", ""},
        {"ServiceBase", &SetupFields::ServiceBase, " photos.example// ", "http://photos.example", ""},
    };
    SaveSetupFields(fields, "/p");
    for (const auto &[key, field, typed, stored, message] : rows) {
        fields = LoadSetupFields();
        fields.*field = typed;
        fields.Welcome = Concat(key, typed);
        fields.Description = "<b>my</b> site";
        if (!message.empty()) Owner.ExpectMessage(message, FlagCritical);
        SaveSetupFields(fields, "/p");
        EXPECT_EQ(Stored(key), stored) << key << " " << typed;
        EXPECT_EQ(Program.Read("welcome.txt"), fields.Welcome) << "the rest is saved";
    }
    EXPECT_EQ(Program.Read("sitedesc.txt"), "my site");
    EXPECT_EQ(LoadSetupFields().BrowserCache, CacheOff);
    EXPECT_EQ(LoadSetupFields().FilesPerPage, AllFiles);
}

TEST_F(SetupDialog, CancelAsksWhereSomethingWouldBeLost) {
    Owner.ExpectMessage("You haven't configured your website yet!...", CriticalQuestion, AnswerNo);
    EXPECT_FALSE(MayCancelSetup(false));
    SaveSetting("Setup", "RunSetup", "1");
    EXPECT_TRUE(MayCancelSetup(false));
    Owner.ExpectMessage("Are you sure you wish to cancel and discard any changes?", CriticalQuestion, AnswerYes);
    EXPECT_TRUE(MayCancelSetup(true));
}

TEST_F(SetupDialog, StylesAreThoseOfHtdocs) {
    Owner.ExpectMessage("We couldn't find any style sheets! Please reinstall!", FlagCritical);
    EXPECT_TRUE(StyleNames().empty());
    for (const char *name : {"StyleSheet_Garden", "StyleSheet_My_Own.old", "Index"})
        Program.Write(std::string("htdocs/") + name + ".tpl");
    const std::vector<std::string> names = StyleNames();
    EXPECT_EQ(names, (std::vector<std::string>{"Garden", "My_Own"}));
    EXPECT_EQ(StyleIndex(names, "My_Own"), 1);
    Owner.ExpectMessage("Your saved stylesheet cannot be found! Please pick a new one.", FlagCritical);
    EXPECT_EQ(StyleIndex(names, "Default"), -1);
}

TEST(SetupTexts, FiguresFollowTheControls) {
    const std::vector<std::string> choices = FilesPerPageChoices(4);
    EXPECT_EQ(choices.front() + choices[19] + choices.back() + FilesPerPageAtFirst(4), "480All16");
    EXPECT_EQ(NumericText("8080x") + NumericText("abc"), "80800");
    EXPECT_EQ(ServiceName("http://photos.example:8000/x"), "photos.example");
    EXPECT_NE(
        AutostartEntry("/opt/my \"$5\" \\100%").find("\nExec=\"/opt/my \\\\\"\\\\$5\\\\\" \\\\\\\\100%%\" start\n"),
        std::string::npos)
        << "the program is quoted";
}

}  // namespace
}  // namespace pixmora
