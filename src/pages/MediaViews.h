// What the media page and the most popular page have in common: three views, their cells, and a slide show's controls.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/site/RequestGrammar.h"
#include "pages/Templates.h"

namespace pixmora {

enum class View { Thumbs, List, SlideShow };

/// Any word but "list" and "slideshow" is taken for "thumbs".
View ReadView(std::string_view word);

/// What a page puts in the place of its five {PIC_...} placeholders.
struct PicParts {
    std::string List;
    std::string Page;
    std::string NavLeft;
    std::string NavRight;
    std::string View;
};

void AddPicParts(std::vector<Filling> &fillings, PicParts parts);

inline constexpr std::string_view PicTableOpening = R"(<table border=0 cellpadding=5 cellspacing=15 align="center">)";

/// The opening elements of the links to the three views.
struct ViewLinks {
    std::string Thumbs;
    std::string List;
    std::string SlideShow;
};

/// "View As:" and the three views, the current one as a plain image.
std::string ViewRow(View current, const ViewLinks &links);

/// Appends cells in rows of gFilesPerRow, all but the last row closed. @param appendCell appends the cell with the
/// given number, from 0 @throws RunTimeError DivisionByZero
void AppendGrid(std::string &list, std::int32_t count, const std::function<void(std::int32_t cell)> &appendCell);
/// Closes the grid's last row unless it is full. @throws RunTimeError DivisionByZero
void CloseLastRow(std::string &list, std::int32_t count);

/// A cell with the hover frame and the font for what it shows, which the caller closes. @param id whole
std::string HoverCell(std::string_view id);
/// The same as one cell of the thumbnail grid, in a table of its own. @param index of the file
std::string ThumbCellOpening(std::int32_t index);
inline constexpr std::string_view ThumbCellClosing = "</font></td></tr></table></td>\r\n\r\n";

/// Where a slide show stands and how it goes on.
struct SlideShow {
    std::string Word;            ///< "play" goes on by itself, any other waits
    std::int32_t Index = 0;      ///< of the file shown, from 0
    std::int32_t Seconds = 0;    ///< a file's display time
    std::int32_t FileCount = 0;  ///< set by SetFileCount

    bool IsPlaying() const { return Word == "play"; }
    /// An index outside of the files becomes the first.
    void SetFileCount(std::int32_t count);
    std::int32_t Next() const;      ///< behind the last file comes the first
    std::int32_t Previous() const;  ///< before the first file comes the last
};

/// @param first index of the word among the arguments; file index and display time follow it. A display time below 1
/// becomes 5.
/// @throws RunTimeError SubscriptOutOfRange, TypeMismatch, Overflow
SlideShow ReadSlideShow(const Arguments &args, std::size_t first);

/// "File 3 of 12"
std::string FilePosition(const SlideShow &show);

/// What the controls of a page's slide show look like.
struct PlayLook {
    std::string_view Back;
    std::string_view Forward;
    std::string_view Paused;
};

/// Back, play, pause and forward, with the script that goes on to the next file while the show is playing.
/// @param openLink gives the opening element of the link to a word and a file index
std::string PlayControls(const SlideShow &show, const PlayLook &look,
                         const std::function<std::string(std::string_view word, std::int32_t index)> &openLink,
                         std::string_view script);

/// The function NextPic. @param address fit for a quoted script string @param start a statement that runs at once, may
/// be empty
std::string NextPicScript(std::string_view address, std::string_view start);

/// The four display times to choose from; nothing when the show has another one. @param openLink for the seconds given
/// to it
std::string DisplayTimes(const SlideShow &show, const std::function<std::string(int seconds)> &openLink);

}  // namespace pixmora
