#pragma once

// The parser's stack grows on the heap, without a limit that a document could reach; its values may be moved
// as bytes.
#define PHPSTYPE_IS_TRIVIAL 1
#define YYSTYPE_IS_TRIVIAL 1
#define YYMAXDEPTH 0x7FFFFFFF
