#include "store/Globals.h"

namespace pixmora {

std::unique_ptr<Database> gDatabase;
std::vector<AlbumPointer> gAlbums;
bool gMoreTypes = false;
std::vector<std::string> gRestrictedWords;
std::unordered_map<std::string, std::int64_t> gCounterRows;

}  // namespace pixmora
