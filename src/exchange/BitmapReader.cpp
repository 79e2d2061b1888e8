#include "exchange/BitmapReader.h"

#include "pixel/Plane.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace kirrel::exchange {

namespace {

// The host keeps sizes as 16-bit numbers; a bitmap beyond that is not one of ours.
constexpr long long kMaxSide = 32767;

[[noreturn]] void badFormat() {
    throw std::runtime_error("Bad file format");
}

std::uint32_t get32(const std::vector<std::uint8_t>& b, std::size_t at) {
    if (at + 4 > b.size()) badFormat();
    return b[at] | (b[at + 1] << 8) | (b[at + 2] << 16) | (static_cast<std::uint32_t>(b[at + 3]) << 24);
}
std::uint16_t get16(const std::vector<std::uint8_t>& b, std::size_t at) {
    if (at + 2 > b.size()) badFormat();
    return static_cast<std::uint16_t>(b[at] | (b[at + 1] << 8));
}

constexpr int kBitFields = 3;

// The byte (0..3) of a 32-bit pixel that a channel mask selects; -1 for no mask, -2 for a mask that
// is not one whole byte.
int maskByte(std::uint32_t mask) {
    if (mask == 0) return -1;
    for (int i = 0; i < 4; ++i)
        if (mask == 0xFFu << (8 * i)) return i;
    return -2;
}

// The channel masks of a bit-field bitmap: in the larger headers they stand inside the header, in
// the 40-byte one just after it (without an alpha mask). False for masks other than whole bytes.
bool readChannelBytes(const std::vector<std::uint8_t>& b, std::uint32_t headerSize, BitmapFile& f) {
    const std::size_t at = 14 + 40;
    const int red = maskByte(get32(b, at)), green = maskByte(get32(b, at + 4)),
              blue = maskByte(get32(b, at + 8));
    const int alpha = headerSize >= 56 ? maskByte(get32(b, at + 12)) : -1;
    if (red < 0 || green < 0 || blue < 0 || alpha == -2) return false;
    f.redByte = red;
    f.greenByte = green;
    f.blueByte = blue;
    f.alphaByte = alpha;
    return true;
}

// A plain 32-bit bitmap's fourth byte is unused by the rules, and many writers leave it 0; it counts
// as alpha only when some pixel sets it.
int fourthByteIfUsed(const std::vector<std::uint8_t>& rows) {
    for (std::size_t i = 3; i < rows.size(); i += 4)
        if (rows[i] != 0) return 3;
    return -1;
}

} // namespace

BitmapFile readBitmapBytes(const std::vector<std::uint8_t>& bytes) {
    BitmapFile f;
    if (bytes.size() < 2 || bytes[0] != 'B' || bytes[1] != 'M') {
        f.result = -1;
        return f;
    }
    const std::uint32_t offset = get32(bytes, 10);
    const std::uint32_t headerSize = get32(bytes, 14);
    long long height = 0;
    if (headerSize == 12) {
        f.width = get16(bytes, 18);
        height = get16(bytes, 20);
        f.bitCount = get16(bytes, 24);
    } else if (headerSize >= 40) {
        f.width = static_cast<std::int32_t>(get32(bytes, 18));
        height = static_cast<std::int32_t>(get32(bytes, 22));
        f.bitCount = get16(bytes, 28);
        f.compression = static_cast<int>(get32(bytes, 30));
        f.colorsUsed = static_cast<int>(get32(bytes, 46));
    } else {
        badFormat();
    }
    const bool bitFields = f.compression == kBitFields && f.bitCount == 32;
    if (bitFields && !readChannelBytes(bytes, headerSize, f)) f.result = -3;

    // A negative height marks rows stored from the top; they are turned to the usual order below.
    const bool topDown = height < 0;
    if (topDown) height = -height;
    if (f.width < 1 || f.width > kMaxSide || height < 1 || height > kMaxSide) badFormat();
    f.height = static_cast<int>(height);

    // An uncompressed file must hold the rows its header promises at whatever depth, even one whose
    // pixels are not read: the picture is made in the file's size all the same, and a few bytes must
    // not claim a picture of gigabytes. Without compression a bit count of 0 holds no pixels at all.
    if (f.compression == 0 || bitFields) {
        const long long stored = (static_cast<long long>(f.width) * f.bitCount + 31) / 32 * 4;
        if (f.bitCount == 0 || offset > bytes.size() ||
            static_cast<long long>(bytes.size() - offset) / f.height < stored)
            badFormat();
    }

    if (f.bitCount < 8) {
        f.result = -2;
        return f;
    }
    if ((f.compression != 0 && !bitFields) || f.result == -3) {
        f.result = -3;
        return f;
    }
    f.result = f.bitCount;

    // The colour table lies between the headers and the pixels.
    const std::size_t tableAt = 14 + static_cast<std::size_t>(headerSize);
    if (f.bitCount <= 8 && f.colorsUsed > 0 && offset > tableAt) {
        const std::size_t room =
            (std::min<std::size_t>(offset, bytes.size()) - std::min(tableAt, bytes.size())) / 4;
        const std::size_t count =
            std::min<std::size_t>({static_cast<std::size_t>(f.colorsUsed), std::size_t{256}, room});
        for (std::size_t i = 0; i < count; ++i)
            f.table.push_back(get32(bytes, tableAt + 4 * i));
    }

    if (f.bitCount == 32)
        f.rowLength = f.width * 4;
    else if (f.bitCount == 24)
        f.rowLength = (f.width * 3 + 3) / 4 * 4;
    else if (f.bitCount == 8)
        f.rowLength = (f.width + 3) / 4 * 4;
    else
        return f; // other depths are not read: their planes stay at zero
    const std::size_t need = static_cast<std::size_t>(f.rowLength) * static_cast<std::size_t>(f.height);
    if (offset > bytes.size() || bytes.size() - offset < need) badFormat();
    f.rows.resize(need);
    for (int r = 0; r < f.height; ++r) {
        const int from = topDown ? f.height - 1 - r : r;
        std::copy_n(bytes.begin() + offset + static_cast<std::size_t>(from) * f.rowLength, f.rowLength,
                    f.rows.begin() + static_cast<std::size_t>(r) * f.rowLength);
    }
    if (f.bitCount == 32 && !bitFields) f.alphaByte = fourthByteIfUsed(f.rows);
    return f;
}

BitmapFile ReadBitmapFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("File not found: " + path);
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    in.seekg(0);
    // The largest bitmap the host could hold, with its headers and table.
    constexpr std::streamoff kMaxFile = 4 * (kMaxSide + 1) * kMaxSide + 4096;
    if (size < 0 || size > kMaxFile) throw std::runtime_error("Bad file format");
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    in.read(reinterpret_cast<char*>(bytes.data()), size);
    if (in.gcount() != size) throw std::runtime_error("Bad file format");
    return readBitmapBytes(bytes);
}

void bitmapPlanes(const BitmapFile& f, krl::Plane& r, krl::Plane& g, krl::Plane& b, std::uint32_t paper) {
    r = krl::Plane(f.width, f.height);
    g = krl::Plane(f.width, f.height);
    b = krl::Plane(f.width, f.height);
    if (f.rows.empty()) return;
    std::uint8_t* rp = r.data();
    std::uint8_t* gp = g.data();
    std::uint8_t* bp = b.data();
    const int paperR = static_cast<int>(paper & 255), paperG = static_cast<int>((paper >> 8) & 255),
              paperB = static_cast<int>((paper >> 16) & 255);
    // A transparent pixel shows the paper; a partly transparent one is blended with it.
    auto over = [](int c, int a, int p) {
        return static_cast<std::uint8_t>((c * a + p * (255 - a) + 127) / 255);
    };
    const std::size_t stride = static_cast<std::size_t>(f.width) + 1;
    for (int row = 0; row < f.height; ++row) {
        const int y = f.height - row - 1; // the first stored row is the picture's bottom
        const std::uint8_t* src = f.rows.data() + static_cast<std::size_t>(row) * f.rowLength;
        for (int x = 0; x < f.width; ++x) {
            const std::size_t at = static_cast<std::size_t>(y) * stride + x;
            if (f.bitCount == 32) {
                const std::uint8_t* px = src + static_cast<std::size_t>(x) * 4;
                const int a = f.alphaByte < 0 ? 255 : px[f.alphaByte];
                rp[at] = over(px[f.redByte], a, paperR);
                gp[at] = over(px[f.greenByte], a, paperG);
                bp[at] = over(px[f.blueByte], a, paperB);
            } else if (f.bitCount == 24) {
                bp[at] = src[static_cast<std::size_t>(x) * 3];
                gp[at] = src[static_cast<std::size_t>(x) * 3 + 1];
                rp[at] = src[static_cast<std::size_t>(x) * 3 + 2];
            } else {
                const std::uint32_t e = src[x] < f.table.size() ? f.table[src[x]] : 0;
                rp[at] = static_cast<std::uint8_t>(e & 255);
                gp[at] = static_cast<std::uint8_t>((e >> 8) & 255);
                bp[at] = static_cast<std::uint8_t>((e >> 16) & 255);
            }
        }
    }
}

} // namespace kirrel::exchange
