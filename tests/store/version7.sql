CREATE TABLE Albums (AlbumName TEXT, Directory TEXT, Description TEXT, Pictures INTEGER, Movies INTEGER,
    FeaturedImage INTEGER, FeaturedImagePath TEXT, SubDirs INTEGER, DateCreated DATE);
CREATE TABLE Users (Username TEXT, Password TEXT, FullName TEXT, Admin BOOLEAN);
CREATE TABLE StatsTotal (Stat SMALLINT, TotalCount LONG);
CREATE TABLE StatsHourly (AlbumName TEXT, WhichDay DATE, WhichHour SMALLINT, RunningTime LONG,
    Visitors LONG, Thumbs LONG, Downloads LONG, Bandwidth LONG);
CREATE TABLE StatsDaily (AlbumName TEXT, WhichDay DATE, RunningTime LONG,
    Visitors LONG, Thumbs LONG, Downloads LONG, Bandwidth LONG);
CREATE TABLE StatsMonthly (AlbumName TEXT, WhichYear SMALLINT, WhichMonth SMALLINT, RunningTime LONG,
    Visitors LONG, Thumbs LONG, Downloads LONG, Bandwidth LONG);
INSERT INTO Albums VALUES ('Zoo', 'C:\Zoo', NULL, 1, 1, 1, NULL, 1, '2004-03-01');
INSERT INTO Users VALUES ('ann', 'a', NULL, 1), ('bob', 'b', NULL, 0), ('ann', 'c', NULL, NULL);
INSERT INTO StatsTotal VALUES (1, 12), (4, 2147483647);
INSERT INTO StatsHourly VALUES ('Zoo', '2004-03-01', 5, NULL, 1, NULL, NULL, NULL),
    ('Zoo', '2004-03-01', 6, NULL, 2, NULL, NULL, 40);
INSERT INTO StatsMonthly VALUES ('Zoo', 2004, 3, NULL, 3, NULL, NULL, 40);
