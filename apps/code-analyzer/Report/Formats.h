#pragma once

#include "Report/Writer.h"

#include <span>
#include <string>

namespace Kesh::CommandLine {

/// A way to write a report.
struct SFormat
{
    const char* name; ///< as users ask for it
    std::unique_ptr<IReportWriter> (*make)(COutput& output, const STextStyle& style);
};

/// All of them; the first is what is written when nobody asks.
std::span<const SFormat> Formats();
/// Null: none has this name.
const SFormat* FindFormat(const std::string& name);
/// Their names with a separator between them.
std::string FormatNames(const char* separator);

} // namespace Kesh::CommandLine
