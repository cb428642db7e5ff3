# SPDX-License-Identifier: MIT
# Choosing among ten control variables in R, to set beside bench_select and bench_subsets (bench/select.sh,
# bench/subsets.sh): all subsets with leaps, searches with step.
# Usage: Rscript bench/leaps.R DATABASE|FILE.csv [process]
# The table "data", or the file, holds y and x1 to x10. Prints the median of 20 searches in this process after a
# warm-up, and their mean processor time; with "process" it reads, searches once and prints the best subset, to be
# timed from outside.

suppressPackageStartupMessages(library(leaps))
arguments <- commandArgs(trailingOnly = TRUE)
if (endsWith(arguments[1], ".csv")) {
    data <- read.csv(arguments[1])
} else {
    database <- DBI::dbConnect(RSQLite::SQLite(), arguments[1])
    data <- DBI::dbGetQuery(database, "SELECT y, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10 FROM data")
    DBI::dbDisconnect(database)
}

search <- function(nbest = 20) {
    summary(regsubsets(y ~ ., data = data, nvmax = 10, nbest = nbest, method = "exhaustive"))
}

if (length(arguments) > 1) {
    found <- search()
    print(found$outmat[which.max(found$adjr2), ])
} else {
    timed <- function(name, run) {
        invisible(run())
        before <- proc.time()
        milliseconds <- replicate(20, {
            from <- Sys.time()
            run()
            as.numeric(difftime(Sys.time(), from, units = "secs")) * 1000
        })
        processor <- sum((proc.time() - before)[c("user.self", "sys.self")]) / 20 * 1000
        cat(sprintf("R's %s: median %.2f ms (%.2f to %.2f), CPU %.1f ms\n",
                    name, median(milliseconds), min(milliseconds), max(milliseconds), processor))
    }
    timed("leaps, exhaustive, nbest 20, with summary", search)
    timed("leaps, exhaustive, nbest 3, with summary", function() search(3))
    scope <- reformulate(setdiff(names(data), "y"), "y")
    none <- lm(y ~ 1, data)
    full <- lm(y ~ ., data)
    timed("step, forward", function() step(none, scope, direction = "forward", trace = 0))
    timed("step, backward", function() step(full, direction = "backward", trace = 0))
    timed("step, both", function() step(none, scope, direction = "both", trace = 0))
}
