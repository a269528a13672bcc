#pragma once

/// The style sheet of the page. It contains no quotation marks, "<", ">" and "&", which the writer
/// would escape.
extern const char *const kPageStyle;
