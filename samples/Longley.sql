-- SPDX-License-Identifier: MIT
-- The labour market of the United States, 1947 to 1962, with total employment as the response: sixteen years, six
-- controls that are nearly collinear.
-- Source: J. W. Longley, "An Appraisal of Least Squares Programs for the Electronic Computer from the Point of View of
-- the User", Journal of the American Statistical Association 62 (1967), 819-841; figures as in the Statistical
-- Reference Datasets of the National Institute of Standards and Technology (NIST).
CREATE TABLE Longley (
    GNPDEFL DECIMAL(6,1) NOT NULL, -- deflator of the gross national product, 1954 = 100
    GNP     BIGINT       NOT NULL, -- gross national product, millions of dollars
    UNEMP   INTEGER      NOT NULL, -- unemployed, thousands
    ARMED   INTEGER      NOT NULL, -- members of the armed forces, thousands
    POP     BIGINT       NOT NULL, -- inhabitants aged 14 and over outside institutions, thousands
    YEAR    INTEGER      PRIMARY KEY,
    TOTEMP  INTEGER      NOT NULL  -- employed in all, thousands
);

INSERT INTO Longley (GNPDEFL, GNP, UNEMP, ARMED, POP, YEAR, TOTEMP) VALUES
    ( 83.0, 234289, 2356, 1590, 107608, 1947, 60323),
    ( 88.5, 259426, 2325, 1456, 108632, 1948, 61122),
    ( 88.2, 258054, 3682, 1616, 109773, 1949, 60171),
    ( 89.5, 284599, 3351, 1650, 110929, 1950, 61187),
    ( 96.2, 328975, 2099, 3099, 112075, 1951, 63221),
    ( 98.1, 346999, 1932, 3594, 113270, 1952, 63639),
    ( 99.0, 365385, 1870, 3547, 115094, 1953, 64989),
    (100.0, 363112, 3578, 3350, 116219, 1954, 63761),
    (101.2, 397469, 2904, 3048, 117388, 1955, 66019),
    (104.6, 419180, 2822, 2857, 118734, 1956, 67857),
    (108.4, 442769, 2936, 2798, 120445, 1957, 68169),
    (110.8, 444546, 4681, 2637, 121950, 1958, 66513),
    (112.6, 482704, 3813, 2552, 123366, 1959, 68655),
    (114.2, 502601, 3931, 2514, 125368, 1960, 69564),
    (115.7, 518173, 4806, 2572, 127852, 1961, 69331),
    (116.9, 554894, 4007, 2827, 130081, 1962, 70551);
