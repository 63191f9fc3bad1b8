#pragma once

#include "Kesh/SyntaxParser/IReader.h"

#include <boost/shared_ptr.hpp>

namespace Kesh::Editor {

class IDocBuffer;

/// A reader over the text of an open document as it was at the last Reset(). The text is copied only when it
/// is asked for: a document whose check has a copy of its own costs nothing here.
boost::shared_ptr<SyntaxParser::IReader> MakeBufferReader(IDocBuffer* buffer);

} // namespace Kesh::Editor
