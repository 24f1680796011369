#ifndef TAMO_XML_ENTITYINPUT_H
#define TAMO_XML_ENTITYINPUT_H

#include <cstddef>
#include <istream>

namespace Tamo::XML {

/// The octets of an entity, from a stream or from memory, which can be read a second time.
///
/// Stream and memory are borrowed. A stream that fails is an IOException. Owned by one parse.
class EntityInput {
public:
    /// All that is left in a stream.
    explicit EntityInput(std::istream& stream);

    /// Octets in memory.
    EntityInput(const char* data, std::size_t size);

    /// How many octets to ask for, when as many as unfinished wait for what is behind them.
    std::size_t nextSize(std::size_t unfinished) const;

    /// Reads up to size octets; fewer mean that the input ends.
    std::size_t read(char* pBuffer, std::size_t size);

    /// Begins anew with the octets that have been read so far, which are at pData for as long as the input is
    /// used; what has not been read yet follows them.
    void readAgain(const char* pData, std::size_t size);

    /// The same where these octets are all.
    void readWholeAgain(const char* pData, std::size_t size);

private:
    std::size_t readStream(char* pBuffer, std::size_t size);

    std::istream* _pStream = nullptr; // read when there are no octets in memory; null for none
    const char* _pData = nullptr;
    std::size_t _left = 0; // of the octets in memory
    std::size_t _size;     // to ask for, at least
};

} // namespace Tamo::XML

#endif
