#pragma once

#include "Kesh/SyntaxParser/Regions.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Kesh::SyntaxParser {

/// Kinds of semantic-tree nodes. Only tags and attributes are checked by name.
enum ESemanticKind : std::int32_t {
    SemanticRoot = 0,
    SemanticDynamicTag = 1,       ///< a tag whose name a PHP island touches
    SemanticCustomTag = 2,        ///< a custom element: its authors make the name up
    SemanticDynamicAttribute = 3, ///< an attribute whose name a PHP island touches
    SemanticText = 4,
    SemanticComment = 5,
    SemanticTag = 7,
    SemanticAttribute = 9,
    SemanticCss = 20, ///< a node of a style sheet; its region kind says which
};

/// Index of a node in its tree; 0 is the top node.
using TSemanticIndex = std::uint32_t;
constexpr TSemanticIndex NoSemanticNode = 0xFFFFFFFF;

struct SSemanticTreeNode
{
    std::int32_t kind = SemanticRoot;
    /// What the node's name stands for in the text (CSS nodes); null where `kind` says it all.
    ISynRegion* regionKind = nullptr;
    /// As written in the document.
    std::wstring name;
    /// For a tag the start tag's `<` and name, for an attribute or CSS name the name.
    SScheme span;
    TSemanticIndex firstChild = NoSemanticNode;
    TSemanticIndex nextSibling = NoSemanticNode;
};

/// The names of one language in a document, nested as the language nests them. Nodes lie in document order.
struct SSemanticTree
{
    std::vector<SSemanticTreeNode> nodes; ///< nodes[0] is the top node
};

/// Builds the semantic trees of a document on each parse while it is switched on.
class ISemanticParser
{
public:
    virtual void SetEnabled(bool enabled) = 0;

protected:
    ~ISemanticParser() = default;
};

} // namespace Kesh::SyntaxParser
