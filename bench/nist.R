# SPDX-License-Identifier: MIT
# The digits that R's lm() reaches on the reference sets of NIST, to set beside ours (docs/accuracy.md).
# Usage: Rscript bench/nist.R tests/data/nist/Longley.csv tests/data/nist/Filip_powers.csv …
# Each file holds the response in its first column and the controls in the others; SET.json beside it holds the
# certified values. A digit count is -log10 of the relative error, at most 15, and 15 for a figure that is the
# certified one when rounded to as many places; of several figures the worst counts.

certified <- function(csv) {
    text <- paste(readLines(sub("(_powers)?\\.csv$", ".json", csv)), collapse = "\n")
    text <- sub('.*?"certified": \\{', "", text, perl = TRUE)
    text <- sub('"exact_from.*', "", text)
    values <- function(key) {
        found <- regmatches(text, gregexpr(sprintf('"%s": "[^"]*"', key), text))[[1]]
        sub('.*: "(.*)"', "\\1", found)
    }
    list(b = values("estimate"), se = values("standard_deviation"), s = values("residual_standard_deviation"))
}

# One half in the last place of a published figure: within it, the figure is met.
half.place <- function(text) as.numeric(sub("[0-9](?=[^0-9]*$)", "5", gsub("[0-9]", "0", text), perl = TRUE)) / 10

digits <- function(got, published) {
    if (length(got) != length(published)) return("none")
    split <- regmatches(published, regexpr("[eE]", published), invert = TRUE)
    mantissa <- vapply(split, `[`, "", 1)
    scale <- vapply(split, function(parts) if (length(parts) > 1) as.numeric(paste0("1e", parts[2])) else 1, 0)
    want <- as.numeric(published)
    error <- abs(got - want)
    met <- error <= abs(half.place(mantissa)) * scale
    sprintf("%.1f", min(15, ifelse(met, 15, -log10(error / abs(want)))))
}

measure <- function(csv, tol) {
    fit <- suppressWarnings(summary(lm(y ~ ., read.csv(csv), tol = tol)))
    want <- certified(csv)
    exact <- as.numeric(want$s) == 0 # nothing to count digits of
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
