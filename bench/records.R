# SPDX-License-Identifier: MIT
# Rscript bench/records.R DATABASE: a fit of every record of table data, read with RSQLite, by lm.
library(RSQLite)
connection <- dbConnect(SQLite(), commandArgs(TRUE)[1])
data <- dbGetQuery(connection, "SELECT y, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10 FROM data")
fit <- lm(y ~ ., data)
cat(sprintf("%.15g\n", coef(fit)))
