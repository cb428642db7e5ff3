# The digits that R's lm() reaches on the reference sets of NIST, to set beside ours (docs/accuracy.md).
# Usage: Rscript nist.R SET.csv SET_powers.csv …
# Each file holds the response in its first column and the controls in the others; SET.json beside it holds the
# certified values. A digit count is -log10 of the relative error, at most 15; of several figures the worst counts.

certified <- function(csv) {
    text <- paste(readLines(sub("(_powers)?\\.csv$", ".json", csv)), collapse = "\n")
    text <- sub('.*?"certified": \\{', "", text, perl = TRUE)
    text <- sub('"exact_from.*', "", text)
    values <- function(key) {
        found <- regmatches(text, gregexpr(sprintf('"%s": "[^"]*"', key), text))[[1]]
        as.numeric(sub('.*: "(.*)"', "\\1", found))
    }
    list(b = values("estimate"), se = values("standard_deviation"), s = values("residual_standard_deviation"))
}

digits <- function(got, want) {
    if (length(got) != length(want)) return("none")
    error <- ifelse(want == 0, abs(got), abs(got - want) / abs(want))
    sprintf("%.1f", min(15, -log10(error)))
}

measure <- function(csv, tol) {
    fit <- suppressWarnings(summary(lm(y ~ ., read.csv(csv), tol = tol)))
    want <- certified(csv)
    exact <- want$s == 0 # nothing to count digits of
    c(set = sub("(_powers)?\\.csv$", "", basename(csv)), tol = tol,
      coefficients = digits(coef(fit)[, 1], want$b),
      standard.errors = if (exact) "-" else digits(coef(fit)[, 2], want$se),
      residual = if (exact) "-" else digits(fit$sigma, want$s))
}

rows <- list()
for (csv in commandArgs(trailingOnly = TRUE)) {
    rows[[length(rows) + 1]] <- measure(csv, 1e-7)
    # lm() leaves a column out whose tolerance is below 1e-7; then it is asked again with a smaller one.
    if (rows[[length(rows)]]["coefficients"] == "none") rows[[length(rows) + 1]] <- measure(csv, 1e-14)
}
print(as.data.frame(do.call(rbind, rows)), row.names = FALSE)
cat(R.version.string, "\n")
