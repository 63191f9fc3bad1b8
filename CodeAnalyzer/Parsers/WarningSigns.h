#pragma once

namespace Kesh::CodeAnalyzer {

class CGrammarTokens;

/// Whether a document that the grammar accepts may hold anything that the statement parsers warn of: a `;`
/// where a body was due, conditions of one text, loops within loops under one name. Never false when there
/// is; it is quick, not exact.
bool MayWarn(const CGrammarTokens& tokens);

} // namespace Kesh::CodeAnalyzer
