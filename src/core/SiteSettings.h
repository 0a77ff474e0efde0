// The settings and texts that a website start loads into the process-wide values.
#pragma once

#include <cstdint>
#include <string>

namespace pixmora {

/// The style sheet of the setting or else the default one. Neither there: the owner is warned and the sheet is empty.
void LoadStyleSheet();
/// Title, author, the welcome text.
void LoadSiteTexts();
/// Picture sizes and qualities, sorting, the grid.
void LoadDisplaySettings();
/// The patterns of restrictwords.txt, or the two that stand where there is no such file.
void LoadRestrictedWords();

/// The five running totals of the statistics.
void ReadTotals();

}  // namespace pixmora
