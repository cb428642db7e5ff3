# All subsets of ten control variables with R's leaps, to set beside a run of TOptimizeMLR (bench/select.sh).
# Usage: Rscript bench/leaps.R DATABASE [process]
# The table "data" holds y and x1 to x10. Prints the median of 20 searches in this process after a warm-up, and their
# mean processor time; with "process" it reads, searches once and prints the best subset, to be timed from outside.

suppressPackageStartupMessages({
    library(DBI)
    library(leaps)
})
arguments <- commandArgs(trailingOnly = TRUE)
database <- dbConnect(RSQLite::SQLite(), arguments[1])
data <- dbGetQuery(database, "SELECT y, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10 FROM data")
dbDisconnect(database)

search <- function() summary(regsubsets(y ~ ., data = data, nvmax = 10, nbest = 20, method = "exhaustive"))

if (length(arguments) > 1) {
    found <- search()
    print(found$outmat[which.max(found$adjr2), ])
} else {
    invisible(search())
    before <- proc.time()
    milliseconds <- replicate(20, {
        from <- Sys.time()
        search()
        as.numeric(difftime(Sys.time(), from, units = "secs")) * 1000
    })
    processor <- sum((proc.time() - before)[c("user.self", "sys.self")]) / 20 * 1000
    cat(sprintf("R's leaps, exhaustive, nbest 20, with summary: median %.2f ms (%.2f to %.2f), CPU %.1f ms\n",
                median(milliseconds), min(milliseconds), max(milliseconds), processor))
}
