#pragma once

#include "Kesh/SyntaxParser/Regions.h"

namespace Kesh::SyntaxParser {

/// Indices of SPhpRegionDefs::TokenDefs.
enum EPhpTokenDef {
    PhpText = 1, ///< blanks, or one operator, or a single backslash
    PhpKeyword = 2,
    PhpOpening = 3,
    PhpClosing = 4,
    PhpStringStart = 5,
    PhpStringContent = 6,
    PhpStringEnd = 7,
    PhpComma = 8,
    PhpArrow = 9,
    PhpSemicolon = 10,
    PhpDoubleArrow = 11,
    PhpAssign = 14,
    PhpPrefixWord = 15, ///< `new`; `static` before a closure; `throw` inside an expression
    PhpArgumentWord =
        16, ///< takes an argument without brackets: `include`, `print`, `yield`, the `=` of `<?=`
    PhpConstantWord = 17,
    PhpHeredoc = 18,
    PhpWord = 19,
    PhpNumber = 20,
    PhpDot = 21, ///< `.`, and younger operators and arrows that pass as one
    PhpOutside = 22
};

/// Indices of SPhpRegionDefs::CommentDefs. An annotation is code with nothing in it to check: a modifier or a
/// head that no statement parser knows.
enum EPhpCommentDef {
    PhpLineComment = 1,
    PhpHashComment = 2,
    PhpBlockComment = 3,
    PhpDocComment = 4,
    PhpData = 11,
    PhpAttribute = 12,
    PhpAnnotation = 13
};

/// Indices of SPhpRegionDefs::VarDefs.
enum EPhpVarDef { PhpPropertyWord = 1, PhpExtraDollar = 2, PhpVariable = 3 };

/// Indices of SPhpRegionDefs::ExtraDefs.
enum EPhpExtraDef { PhpFunction = 1, PhpCalledWord = 3, PhpDeclaredName = 5 };

} // namespace Kesh::SyntaxParser
