#pragma once

#include "Base/Exception.h"

namespace Kesh::XML {

/// A text that should have been XML.
class KESH_EXPORT CXmlError : public Base::CException
{
public:
    using CException::CException;
};

} // namespace Kesh::XML
