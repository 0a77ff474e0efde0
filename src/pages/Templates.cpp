// The pieces that several pages share.
#include "pages/Templates.h"

#include <algorithm>
#include <array>
#include <span>

#include "platform/runtime/Numbers.h"

namespace pixmora {

namespace {

constexpr std::array<std::string_view, 3> footerSentences = {
    "Download Pixmora! and share your pictures free!",
    "See why Pixmora! is better than online picture services.",
    "Want to set up your own picture website? Download Pixmora! for free!",
};

/// The filling whose placeholder begins the text, or the end of the list.
std::span<const Filling>::iterator FillingAt(std::string_view text, std::span<const Filling> fillings) {
    const std::string_view placeholder = text.substr(0, text.find('}') + 1);
    return std::ranges::find(fillings, placeholder, &Filling::Placeholder);
}

void AppendFilled(std::string &page, std::string_view text, std::span<const Filling> fillings) {
    for (std::size_t brace = text.find('{'); brace != std::string_view::npos; brace = text.find('{')) {
        page += text.substr(0, brace);
        text.remove_prefix(brace);
        const auto filling = FillingAt(text, fillings);
        if (filling == fillings.end()) {
            page += '{';
            text.remove_prefix(1);
            continue;
        }
        AppendFilled(page, filling->Value, {filling + 1, fillings.end()});
        text.remove_prefix(filling->Placeholder.size());
    }
    page += text;
}

}  // namespace

std::string FillAll(std::string head, std::string_view text, const std::vector<Filling> &fillings) {
    std::size_t size = head.size() + text.size();
    for (const Filling &filling : fillings) size += filling.Value.size();
    head.reserve(size);
    AppendFilled(head, text, fillings);
    return head;
}

std::size_t SendPage(const Connection &socket, std::string_view text, const std::vector<Filling> &fillings) {
    const std::string head = WriteResponseHead("text/html", true);
    const std::string page = FillAll(head, text, fillings);
    SendIgnoringErrors(socket, page);
    return page.size() - head.size();
}

std::string MakeFooter() {
    const auto drawn = static_cast<std::size_t>(Rnd() * footerSentences.size());
    return Concat(R"(<a href=")", PIXMORA_HOME_PAGE, R"(" target="_blank"><b>)", footerSentences[drawn],
                  "</b></a></font>");
}

std::string BrowserScript() {
    return Replace(R"(<script language="javascript">
sBrowser = "IE"; sBrowserVer = 6;
function mMouseOver(tdID) {
   if(sBrowser == "IE" && sBrowserVer >= 5.5) {
       var tdbox = document.all("pic_" + tdID);
       if (tdbox != null) tdbox.style.border = "solid #2254B1 1px"
   }
}

function mMouseOut(tdID) {
   if(sBrowser == "IE" && sBrowserVer >= 5.5) {
       var tdbox = document.all("pic_" + tdID);
       if (tdbox != null) tdbox.style.border = "solid white 1px"
   }
}
</script>
)",
                   "\n", CrLf);
}

std::string EscapeForScript(std::string_view text) {
    return Replace(std::string(text), "'", "\\'");
}

std::string LoginNameText(std::string_view username) {
    return username.empty() ? std::string() : Concat("User: ", username);
}

}  // namespace pixmora
