# SPDX-License-Identifier: MIT
# The same question as bench_workbench asks, in R: workbench.R FILE.csv DECIMAL SEPARATOR RESPONSE FIELD... Prints the
# milliseconds of reading, fitting with its summary and influence, and drawing the usual four plots.
arguments <- commandArgs(trailingOnly = TRUE)
lap <- function(what, expression) {
  passed <- system.time(value <- force(expression))[["elapsed"]]
  cat(sprintf("%-28s %8.0f\n", what, 1000 * passed))
  invisible(value)
}
data <- lap("read", read.csv(arguments[1], dec = arguments[2], sep = arguments[3]))
fit <- lap("fit", {
  fit <- lm(reformulate(arguments[-(1:4)], arguments[4]), data)
  capture.output(print(summary(fit)))
  influence.measures(fit)
  fit
})
lap("figures", {
  png(tempfile(fileext = ".png"), 1200, 900)
  par(mfrow = c(2, 2))
  plot(fit)
  dev.off()
})
