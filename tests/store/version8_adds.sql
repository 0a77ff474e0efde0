CREATE TABLE StatsRecent (WhatTime LONG, WhatStat SMALLINT, StatValue LONG);
INSERT INTO StatsRecent VALUES (-5, 4, 40);
