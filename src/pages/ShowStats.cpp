// clsWebServerCommands.h: the statistics page: the site's figures by span, hour, day and month, over all albums.
#include <string>
#include <vector>

#include "core/site/Globals.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "store/StatsTables.h"

namespace pixmora {

namespace {

void AppendPointer(std::string &row, std::string_view attribute, int index, std::string_view action) {
    Append(row, attribute, R"(="setPointer(this, )", index, ", '", action, R"(', '#ffffff', '#F4F4F4', '#dddddd');")");
}

std::string PointerRow(int index) {
    std::string row = R"(<tr style="cursor: hand;")";
    AppendPointer(row, " onMouseOver", index, "over");
    AppendPointer(row, " onMouseOut", index, "out");
    AppendPointer(row, " onClick", index, "click");
    return row += ">";
}

void AppendHeading(std::string &table, std::string_view column) {
    Append(table, R"(<td class="tdTableRow" width="20%" align="right"><b>)", column, "</b></td>", CrLf);
}

/// The table up to its rows. @param spanColumn heading of the first column
std::string OpenTable(std::string_view title, std::string_view spanColumn) {
    std::string table =
        Concat(R"(<table border=0 width="90%" cellpadding="3" cellspacing="1" class="tblTableHeader">)", CrLf, "<tr>",
               CrLf, R"(<td class="tdTableTitle">)", title, "</td>", CrLf, "</tr>", CrLf, "<tr>", CrLf,
               R"(<td class="tdTableContents">)", CrLf, R"(<table border=0 width="100%">)", CrLf, "<tr>", CrLf,
               R"(<td class="tdTableRow" width="20%"><b>)", spanColumn, "</b></td>", CrLf);
    for (const char *column : StatsColumns) AppendHeading(table, column);
    Append(table, "</tr>", CrLf);
    return table;
}

/// @param isPointed whether the rows take the pointer
std::string TableText(const StatsTable &content, bool isPointed) {
    std::string table = OpenTable(content.Title, content.Span);
    int index = 0;
    for (const StatsRow &row : content.Rows) {
        Append(table, isPointed ? PointerRow(index++) : "<tr>", CrLf, R"(<td class="tdTableRow">)", row.Label, "</td>",
               CrLf);
        for (const std::string &figure : FigureTexts(row.Counts)) {
            Append(table, R"(<td class="tdTableRow" align="right">)", figure, "</td>", CrLf);
        }
        Append(table, "</tr>", CrLf);
    }
    return table += "</table></td></tr></table><br><br>";
}

}  // namespace

void clsWebServerCommands::genShowStats(const Connection &socket) const {
    std::vector<Filling> fillings = {
        {"{STYLE_SHEET}", gStyleSheet}, {"{SERVER_TITLE}", gServerTitle}, {"{AUTHOR}", gAuthor}};
    constexpr const char *places[] = {"{STATS_SUMMARY}", "{STATS_HOURLY}", "{STATS_DAILY}", "{STATS_MONTHLY}"};
    const std::vector<StatsTable> tables = ReadStatsTables();
    for (std::size_t i = 0; i < tables.size(); ++i) fillings.push_back({places[i], TableText(tables[i], i > 0)});
    // Deliberate: this page's own bytes are not counted.
    SendPage(socket, tplShowStats, fillings);
}

}  // namespace pixmora
