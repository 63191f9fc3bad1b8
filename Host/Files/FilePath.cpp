#include "Files/FilePath.h"

#include <QTextCodec>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace Kesh::Host {

namespace {

constexpr char32_t EscapeFirst = 0xDC80;
constexpr char32_t EscapeLast = 0xDCFF;

bool IsEscape(char32_t c)
{
    return c >= EscapeFirst && c <= EscapeLast;
}

/// Length of the valid UTF-8 sequence at `bytes`, 0 when there is none; `out` receives its character.
std::size_t DecodeOne(std::string_view bytes, char32_t& out)
{
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = lead < 0x80             ? 1
                               : (lead & 0xE0) == 0xC0 ? 2
                               : (lead & 0xF0) == 0xE0 ? 3
                               : (lead & 0xF8) == 0xF0 ? 4
                                                       : 0;
    if (length == 0 || bytes.size() < length)
        return 0;
    static constexpr unsigned char Masks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    static constexpr char32_t Smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    out = lead & Masks[length];
    for (std::size_t i = 1; i < length; ++i) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        if ((c & 0xC0) != 0x80)
            return 0;
        out = (out << 6) | (c & 0x3F);
    }
    const bool valid = out >= Smallest[length] && out <= 0x10FFFF && !(out >= 0xD800 && out <= 0xDFFF);
    return valid ? length : 0;
}

/// How many ASCII bytes a text begins with, looked at by the word.
std::size_t AsciiLength(std::string_view bytes)
{
    constexpr std::uint64_t HighBits = 0x8080808080808080;
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= bytes.size(); length += sizeof word) {
        std::memcpy(&word, bytes.data() + length, sizeof word);
        if (word & HighBits)
            break;
    }
    while (length < bytes.size() && static_cast<unsigned char>(bytes[length]) < 0x80)
        ++length;
    return length;
}

void AppendUtf8(std::string& out, char32_t c)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

/// Qt turns file names into bytes with the locale's codec, which in the C locale loses all but ASCII.
class CFileNameCodec final : public QTextCodec
{
public:
    QByteArray name() const override { return "UTF-8-file-names"; }
    int mibEnum() const override { return -4711; }

protected:
    QString convertToUnicode(const char* in, int length, ConverterState*) const override
    {
        return PathToQt(PathFromBytes({in, static_cast<std::size_t>(length)}));
    }
    QByteArray convertFromUnicode(const QChar* in, int length, ConverterState*) const override
    {
        return QByteArray::fromStdString(PathToBytes(PathFromQt(QString(in, length))));
    }
};

} // namespace

std::wstring PathFromBytes(std::string_view bytes)
{
    // Whole files go through here, and most of their bytes are ASCII.
    std::wstring path(bytes.size(), L'\0');
    std::size_t size = 0;
    while (!bytes.empty()) {
        const std::size_t ascii = AsciiLength(bytes);
        std::copy_n(bytes.begin(), ascii, path.begin() + static_cast<std::ptrdiff_t>(size));
        size += ascii;
        bytes.remove_prefix(ascii);
        if (bytes.empty())
            break;
        char32_t c = 0;
        std::size_t length = DecodeOne(bytes, c);
        if (length == 0) {
            c = 0xDC00 + static_cast<unsigned char>(bytes[0]);
            length = 1;
        }
        path[size++] = static_cast<wchar_t>(c);
        bytes.remove_prefix(length);
    }
    path.resize(size);
    return path;
}

std::string PathToBytes(std::wstring_view path)
{
    // Most are ASCII; a loop without a way out works on whole vectors.
    std::string bytes(path.size(), '\0');
    char32_t all = 0;
    for (std::size_t i = 0; i < path.size(); ++i) {
        all |= static_cast<char32_t>(path[i]);
        bytes[i] = static_cast<char>(path[i]);
    }
    if (all < 0x80)
        return bytes;
    bytes.clear();
    for (const wchar_t w : path) {
        const auto c = static_cast<char32_t>(w);
        if (IsEscape(c))
            bytes += static_cast<char>(c - 0xDC00);
        else
            AppendUtf8(bytes, c);
    }
    return bytes;
}

std::wstring PathFromQt(const QString& path)
{
    // QString::toStdWString() would replace the lone surrogates that stand for bad bytes.
    std::wstring wide;
    wide.reserve(static_cast<std::size_t>(path.size()));
    for (int i = 0; i < path.size(); ++i) {
        const QChar c = path[i];
        if (c.isHighSurrogate() && i + 1 < path.size() && path[i + 1].isLowSurrogate())
            wide += static_cast<wchar_t>(QChar::surrogateToUcs4(c, path[++i]));
        else
            wide += static_cast<wchar_t>(c.unicode());
    }
    return wide;
}

QString PathToQt(std::wstring_view path)
{
    QString text;
    text.reserve(static_cast<int>(path.size()));
    for (const wchar_t w : path) {
        const auto c = static_cast<uint>(w);
        if (QChar::requiresSurrogates(c)) {
            text += QChar(QChar::highSurrogate(c));
            text += QChar(QChar::lowSurrogate(c));
        } else {
            text += QChar(static_cast<ushort>(c));
        }
    }
    return text;
}

std::wstring AbsolutePath(const std::wstring& path)
{
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(PathToBytes(path), error);
    // A current folder that has been removed still has the name of where it was.
    if (error && !path.empty())
        absolute = std::filesystem::read_symlink("/proc/self/cwd", error) / PathToBytes(path);
    absolute = absolute.lexically_normal();
    std::string bytes = absolute.string();
    while (bytes.size() > 1 && bytes.back() == '/')
        bytes.pop_back();
    return PathFromBytes(bytes);
}

std::wstring ResolvedPath(const std::wstring& path)
{
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(PathToBytes(path), error);
    return error ? AbsolutePath(path) : PathFromBytes(resolved.string());
}

std::wstring LinkTarget(const std::wstring& path)
{
    namespace fs = std::filesystem;
    constexpr int MaxLinks = 40; // as the system has it
    fs::path target(PathToBytes(path));
    std::error_code error;
    for (int i = 0; i < MaxLinks && fs::is_symlink(fs::symlink_status(target, error)); ++i)
        target = target.parent_path() / fs::read_symlink(target, error);
    return PathFromBytes(target.string());
}

bool LiesIn(const std::wstring& folder, const std::wstring& path)
{
    return path == folder || path.starts_with(folder.ends_with(L'/') ? folder : folder + L'/');
}

bool IsRegularFile(const std::wstring& path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(PathToBytes(path), ignored);
}

bool LeadsOut(const std::wstring& folder, const std::wstring& path)
{
    if (!LiesIn(AbsolutePath(folder), AbsolutePath(path)))
        return false;
    const std::wstring target = AbsolutePath(LinkTarget(path));
    const std::size_t slash = target.rfind(L'/') + 1;
    return !LiesIn(ResolvedPath(folder), ResolvedPath(target.substr(0, slash)) + L'/' + target.substr(slash));
}

std::string ProgramFolder()
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::wstring FileName(const std::wstring& path)
{
    return path.substr(path.rfind(L'/') + 1);
}

void InstallFileNameCodec()
{
    // Qt owns every codec from its construction on.
    QTextCodec::setCodecForLocale(new CFileNameCodec);
}

} // namespace Kesh::Host
