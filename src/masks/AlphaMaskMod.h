#pragma once
// The small tools on the host's alpha plane, the one plane that belongs to no frame: a mix of two
// sources through it, and the copies of a picture's brightness into it.
//
// Sense: here alpha 0 keeps the "Lighter Colors Favor" source and 255 gives the "Darker" one, the
// host's own sense of its alpha. The animated masks hold brightness and are inverted before use.

#include <string>

namespace kirrel::masks {

// Mixes the two sources through the alpha plane into the current frame. Saves the host's
// single-picture undo first.
void AlphaMask(const std::string& lighter, const std::string& darker);

// The brightness (mean of red, green, blue) of the current frame or of the swap buffer into the
// alpha plane. The last row and column of the alpha plane keep their values.
void SendMain2Alpha();
void SendSwap2Alpha();

} // namespace kirrel::masks
