#pragma once

#include "Findings/Describe.h"
#include "Findings/FixProof.h"

#include <cstddef>
#include <string>

namespace Kesh::Findings {

/// A text after all of its fixes that mend something and break nothing.
struct SMended
{
    std::wstring text;
    std::size_t fixed = 0;
    bool isAll = true; ///< false: the budget did not last; another run may mend more
};

/// Mends what can be mended of a file, but for names that no list knows. Of the text that this leaves nothing
/// more can be mended, but for the budget. `file` describes it, its text being `text`. Throws
/// Base::CWorkError when it cannot be checked.
SMended MendText(CTextCheck& check, const SCheckedFile& file, const std::wstring& factory, std::wstring text,
                 const SRules& rules, SProofBudget budget);

} // namespace Kesh::Findings
