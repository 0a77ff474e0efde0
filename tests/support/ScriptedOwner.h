// The owner of a test: a person at the machine who is asked what the script foresees, in its order, and nothing else.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <string>

#include "core/site/OwnerDialogue.h"

namespace pixmora {

/// Whether the text is the one foreseen: whole, or its beginning with "..." behind it.
inline bool IsForeseen(const std::string &text, const std::string &foreseen) {
    if (!foreseen.ends_with("...")) return text == foreseen;
    return text.starts_with(foreseen.substr(0, foreseen.size() - 3));
}

/// Installs itself as the owner's dialogue for its life. Whatever comes when something else was expected, or nothing,
/// fails the test; so does what was expected and has not come by the end of the scope. Questions that the script
/// doesn't foresee take their No.
class ScriptedOwner : public OwnerDialogue {
public:
    ScriptedOwner() { SetOwnerDialogue(this); }
    ~ScriptedOwner() override {
        SetOwnerDialogue(nullptr);
        for (const Step &step : script_) ADD_FAILURE() << "never came: " << step.Text;
    }

    /// A message box. @param text as IsForeseen takes it @param flags exact
    void ExpectMessage(const std::string &text, int flags, int answer = AnswerOk) {
        script_.push_back({Described(text, flags), answer});
    }
    void ExpectBrowser(const std::string &url) { script_.push_back({"opens " + url}); }
    void ExpectBalloon(const std::string &title, const std::string &text) {
        script_.push_back({"balloon " + title + ": " + text});
    }
    void ExpectNotice(const std::string &text) { script_.push_back({"notice " + text}); }
    void ExpectSetup() { script_.push_back({"setup"}); }

    /// Whether all that was expected has come.
    bool IsDone() const { return script_.empty(); }
    int StatusChanges() const { return statusChanges_; }
    /// What SetFiguresRunning was last called with; nothing when it never was.
    std::optional<bool> FiguresRunning() const { return figuresRunning_; }

    int ShowMessageBox(const std::string &text, int flags) override {
        return Take(Described(text, flags), (flags & FlagYesNo) != 0 ? AnswerNo : AnswerOk);
    }
    void ShowHelpBalloon(const std::string &title, const std::string &text) override {
        Take("balloon " + title + ": " + text);
    }
    void ShowNotice(const std::string &text) override { Take("notice " + text); }
    void OpenInBrowser(const std::string &url) override { Take("opens " + url); }
    void WebsiteStatusChanged() override { ++statusChanges_; }
    void SetFiguresRunning(bool running) override { figuresRunning_ = running; }
    void ShowSetup() override { Take("setup"); }

private:
    struct Step {
        std::string Text;
        int Answer = AnswerOk;
    };

    static std::string Described(const std::string &text, int flags) {
        return "message (flags " + std::to_string(flags) + ") " + text;
    }

    int Take(const std::string &text, int refusal = AnswerOk) {
        const Step step = script_.empty() ? Step{"nothing"} : script_.front();
        if (!script_.empty()) script_.pop_front();
        const bool isForeseen = IsForeseen(text, step.Text);
        EXPECT_TRUE(isForeseen) << "came: " << text << "\nforeseen: " << step.Text;
        return isForeseen ? step.Answer : refusal;
    }

    std::deque<Step> script_;
    int statusChanges_ = 0;
    std::optional<bool> figuresRunning_;
};

}  // namespace pixmora
