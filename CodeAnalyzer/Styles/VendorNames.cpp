#include "Styles/VendorNames.h"

#include "Styles/StyleFindings.h"

#include <algorithm>
#include <iterator>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::string_view Vendors[] = {
    "webkit", "moz", "ms",  "o",  "khtml", "apple",  "epub",  "mso",  "wap",      "xv",     "atsc", "hp",
    "ro",     "tc",  "rim", "ah", "konq",  "prince", "servo", "icab", "internal", "chrome", "blink"};

std::string_view VendorOf(std::string_view name)
{
    return name.substr(1, std::min(name.find('-', 1), name.size()) - 1);
}

} // namespace

bool IsVendorName(std::string_view name)
{
    return std::ranges::find(Vendors, VendorOf(name)) != std::end(Vendors);
}

std::string NearestVendor(std::string_view name)
{
    const std::string_view vendor = VendorOf(name);
    CNearestName nearest(vendor);
    for (const std::string_view known : Vendors)
        nearest.Offer(known);
    if (nearest.Get().empty())
        return {};
    return '-' + nearest.Get() + std::string(name.substr(1 + vendor.size()));
}

} // namespace Kesh::CodeAnalyzer
