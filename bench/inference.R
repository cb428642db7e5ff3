# SPDX-License-Identifier: MIT
# Inference, diagnostics and influence of 2500 observations of ten control variables in R, to set beside
# bench_inference: medians in milliseconds. Needs r-cran-sandwich and r-cran-lmtest.
# Usage: Rscript bench/inference.R [RUNS]
suppressMessages({library(sandwich); library(lmtest)})
arguments <- commandArgs(trailingOnly = TRUE)
runs <- if (length(arguments) > 0) as.integer(arguments[1]) else 51

set.seed(1)
data <- as.data.frame(matrix(rnorm(2500 * 11, 5, 2), 2500))
names(data) <- c("y", paste0("x", 1:10))
fit <- lm(y ~ ., data)
products <- as.formula(paste("~ (", paste0("x", 1:10, collapse = " + "), ")^2 +",
                             paste0("I(x", 1:10, "^2)", collapse = " + ")))

timed <- function(name, work) {
    times <- vapply(seq_len(runs), function(i) {
        start <- Sys.time()
        work()
        as.numeric(difftime(Sys.time(), start, units = "secs")) * 1000
    }, 0)
    cat(sprintf("%-46s %8.3f ms\n", name, median(times)))
}
timed("influence.measures", function() influence.measures(fit))
timed("summary", function() summary(fit))
timed("vcovHC, HC3", function() vcovHC(fit))
timed("NeweyWest, 8 lags", function() NeweyWest(fit, lag = 8, prewhite = FALSE))
timed("shapiro.test", function() shapiro.test(resid(fit)))
timed("bptest", function() bptest(fit))
timed("dwtest", function() dwtest(fit))
timed("resettest", function() resettest(fit, power = 2:3))
timed("the four tests", function() { shapiro.test(resid(fit)); bptest(fit); dwtest(fit); resettest(fit, power = 2:3) })
timed("bptest with squares and products (White's)", function() bptest(fit, products, data = data))
cat(R.version.string, "\n")
