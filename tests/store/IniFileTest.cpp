// INI files: what is found in them, and what does no harm.
#include "store/IniFile.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace pixmora {

TEST(IniFile, FindsValuesWithoutCase) {
    const TempFolder folder;
    const IniFile file(folder.Write("exif.ini",
                                    "\xEF\xBB\xBFnowhere=1\n; remark\n"
                                    "[Flash] \r\n  0 = No flash  \r\n1=\"  Fired  \"\r\n;2=remark\r\n3=a=b;c\r\n"
                                    "[ExposureTime]\nFormat=1/@X s\nformat=second\nEmpty=\n"
                                    "[Broken\nkey=value\n[flash]\n9=Auto\n=nameless\n\0\xFF\xFE=\n[Last]\nx=1"));
    EXPECT_EQ(file.Value("flash", "0"), "No flash");
    EXPECT_EQ(file.Value("FLASH", "1"), "  Fired  ");
    EXPECT_EQ(file.Value("Flash", "2"), "");
    EXPECT_EQ(file.Value("Flash", "3"), "a=b;c");
    EXPECT_EQ(file.Value("Flash", "9"), "Auto") << "sections of one name count together";
    EXPECT_EQ(file.Value("ExposureTime", "FORMAT"), "1/@X s") << "the first of two counts";
    EXPECT_EQ(file.Value("ExposureTime", "Empty"), "");
    EXPECT_EQ(file.Value("Flash", "Format"), "") << "not the other section's";
    EXPECT_EQ(file.Value("Nowhere", "0"), "");
}

}  // namespace pixmora
