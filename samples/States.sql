-- SPDX-License-Identifier: MIT
-- The fifty states of the USA in the 1970s, with two columns of text and two names that hold a blank.
-- Source: U.S. Department of Commerce, Bureau of the Census, "Statistical Abstract of the United States" (1977) and
-- "County and City Data Book" (1977).
CREATE TABLE States (
    State             VARCHAR(20)      PRIMARY KEY,
    Region            VARCHAR(16)      NOT NULL,
    Division          VARCHAR(20)      NOT NULL,
    Population        INTEGER          NOT NULL, -- July 1975, thousands
    Income            MONEY            NOT NULL, -- per head, 1974, dollars
    Illiteracy        DOUBLE PRECISION NOT NULL, -- 1970, percent of the inhabitants
    "Life expectancy" DECIMAL(5,2)     NOT NULL, -- 1969 to 1971, years
    Murder            REAL             NOT NULL, -- 1976, murders and manslaughters per 100000 inhabitants
    "High school"     NUMERIC(4,1)     NOT NULL, -- 1970, percent who finished high school
    Frost             SMALLINT         NOT NULL, -- mean number of days below freezing in a large city, 1931 to 1960
    Area              BIGINT           NOT NULL  -- land, square miles
);

INSERT INTO States (State, Region, Division, Population, Income, Illiteracy, "Life expectancy", Murder, "High school",
                    Frost, Area) VALUES
    ('Alabama',        'South',         'East South Central',  3615, 3624, 2.1, 69.05, 15.1, 41.3,  20,  50708),
    ('Alaska',         'West',          'Pacific',              365, 6315, 1.5, 69.31, 11.3, 66.7, 152, 566432),
    ('Arizona',        'West',          'Mountain',            2212, 4530, 1.8, 70.55,  7.8, 58.1,  15, 113417),
    ('Arkansas',       'South',         'West South Central',  2110, 3378, 1.9, 70.66, 10.1, 39.9,  65,  51945),
    ('California',     'West',          'Pacific',            21198, 5114, 1.1, 71.71, 10.3, 62.6,  20, 156361),
    ('Colorado',       'West',          'Mountain',            2541, 4884, 0.7, 72.06,  6.8, 63.9, 166, 103766),
    ('Connecticut',    'Northeast',     'New England',         3100, 5348, 1.1, 72.48,  3.1,   56, 139,   4862),
    ('Delaware',       'South',         'South Atlantic',       579, 4809, 0.9, 70.06,  6.2, 54.6, 103,   1982),
    ('Florida',        'South',         'South Atlantic',      8277, 4815, 1.3, 70.66, 10.7, 52.6,  11,  54090),
    ('Georgia',        'South',         'South Atlantic',      4931, 4091,   2, 68.54, 13.9, 40.6,  60,  58073),
    ('Hawaii',         'West',          'Pacific',              868, 4963, 1.9,  73.6,  6.2, 61.9,   0,   6425),
    ('Idaho',          'West',          'Mountain',             813, 4119, 0.6, 71.87,  5.3, 59.5, 126,  82677),
    ('Illinois',       'North Central', 'East North Central', 11197, 5107, 0.9, 70.14, 10.3, 52.6, 127,  55748),
    ('Indiana',        'North Central', 'East North Central',  5313, 4458, 0.7, 70.88,  7.1, 52.9, 122,  36097),
    ('Iowa',           'North Central', 'West North Central',  2861, 4628, 0.5, 72.56,  2.3,   59, 140,  55941),
    ('Kansas',         'North Central', 'West North Central',  2280, 4669, 0.6, 72.58,  4.5, 59.9, 114,  81787),
    ('Kentucky',       'South',         'East South Central',  3387, 3712, 1.6,  70.1, 10.6, 38.5,  95,  39650),
    ('Louisiana',      'South',         'West South Central',  3806, 3545, 2.8, 68.76, 13.2, 42.2,  12,  44930),
    ('Maine',          'Northeast',     'New England',         1058, 3694, 0.7, 70.39,  2.7, 54.7, 161,  30920),
    ('Maryland',       'South',         'South Atlantic',      4122, 5299, 0.9, 70.22,  8.5, 52.3, 101,   9891),
    ('Massachusetts',  'Northeast',     'New England',         5814, 4755, 1.1, 71.83,  3.3, 58.5, 103,   7826),
    ('Michigan',       'North Central', 'East North Central',  9111, 4751, 0.9, 70.63, 11.1, 52.8, 125,  56817),
    ('Minnesota',      'North Central', 'West North Central',  3921, 4675, 0.6, 72.96,  2.3, 57.6, 160,  79289),
    ('Mississippi',    'South',         'East South Central',  2341, 3098, 2.4, 68.09, 12.5,   41,  50,  47296),
    ('Missouri',       'North Central', 'West North Central',  4767, 4254, 0.8, 70.69,  9.3, 48.8, 108,  68995),
    ('Montana',        'West',          'Mountain',             746, 4347, 0.6, 70.56,    5, 59.2, 155, 145587),
    ('Nebraska',       'North Central', 'West North Central',  1544, 4508, 0.6,  72.6,  2.9, 59.3, 139,  76483),
    ('Nevada',         'West',          'Mountain',             590, 5149, 0.5, 69.03, 11.5, 65.2, 188, 109889),
    ('New Hampshire',  'Northeast',     'New England',          812, 4281, 0.7, 71.23,  3.3, 57.6, 174,   9027),
    ('New Jersey',     'Northeast',     'Middle Atlantic',     7333, 5237, 1.1, 70.93,  5.2, 52.5, 115,   7521),
    ('New Mexico',     'West',          'Mountain',            1144, 3601, 2.2, 70.32,  9.7, 55.2, 120, 121412),
    ('New York',       'Northeast',     'Middle Atlantic',    18076, 4903, 1.4, 70.55, 10.9, 52.7,  82,  47831),
    ('North Carolina', 'South',         'South Atlantic',      5441, 3875, 1.8, 69.21, 11.1, 38.5,  80,  48798),
    ('North Dakota',   'North Central', 'West North Central',   637, 5087, 0.8, 72.78,  1.4, 50.3, 186,  69273),
    ('Ohio',           'North Central', 'East North Central', 10735, 4561, 0.8, 70.82,  7.4, 53.2, 124,  40975),
    ('Oklahoma',       'South',         'West South Central',  2715, 3983, 1.1, 71.42,  6.4, 51.6,  82,  68782),
    ('Oregon',         'West',          'Pacific',             2284, 4660, 0.6, 72.13,  4.2,   60,  44,  96184),
    ('Pennsylvania',   'Northeast',     'Middle Atlantic',    11860, 4449,   1, 70.43,  6.1, 50.2, 126,  44966),
    ('Rhode Island',   'Northeast',     'New England',          931, 4558, 1.3,  71.9,  2.4, 46.4, 127,   1049),
    ('South Carolina', 'South',         'South Atlantic',      2816, 3635, 2.3, 67.96, 11.6, 37.8,  65,  30225),
    ('South Dakota',   'North Central', 'West North Central',   681, 4167, 0.5, 72.08,  1.7, 53.3, 172,  75955),
    ('Tennessee',      'South',         'East South Central',  4173, 3821, 1.7, 70.11,   11, 41.8,  70,  41328),
    ('Texas',          'South',         'West South Central', 12237, 4188, 2.2,  70.9, 12.2, 47.4,  35, 262134),
    ('Utah',           'West',          'Mountain',            1203, 4022, 0.6,  72.9,  4.5, 67.3, 137,  82096),
    ('Vermont',        'Northeast',     'New England',          472, 3907, 0.6, 71.64,  5.5, 57.1, 168,   9267),
    ('Virginia',       'South',         'South Atlantic',      4981, 4701, 1.4, 70.08,  9.5, 47.8,  85,  39780),
    ('Washington',     'West',          'Pacific',             3559, 4864, 0.6, 71.72,  4.3, 63.5,  32,  66570),
    ('West Virginia',  'South',         'South Atlantic',      1799, 3617, 1.4, 69.48,  6.7, 41.6, 100,  24070),
    ('Wisconsin',      'North Central', 'East North Central',  4589, 4468, 0.7, 72.48,    3, 54.5, 149,  54464),
    ('Wyoming',        'West',          'Mountain',             376, 4566, 0.6, 70.29,  6.9, 62.9, 173,  97203);
