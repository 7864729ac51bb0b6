#include "keyboards/usb/muted_output.h"

#include <iostream>
#include <memory>
#include <streambuf>

namespace glimra::keyboards {

namespace {

thread_local int mutedOutputs = 0;

/// Stands in front of std::cout's own buffer and hands on what threads write that are not muted.
class MutableBuffer final : public std::streambuf {
public:
    MutableBuffer() : m_original(std::cout.rdbuf(this)) {}

protected:
    int_type overflow(int_type character) override {
        if (mutedOutputs > 0 || traits_type::eq_int_type(character, traits_type::eof()))
            return traits_type::not_eof(character);
        return m_original->sputc(traits_type::to_char_type(character));
    }
    std::streamsize xsputn(const char* text, std::streamsize size) override {
        return mutedOutputs > 0 ? size : m_original->sputn(text, size);
    }
    int sync() override { return mutedOutputs > 0 ? 0 : m_original->pubsync(); }

private:
    std::streambuf* m_original;
};

} // namespace

MutedOutput::MutedOutput() {
    ++mutedOutputs;
}

MutedOutput::~MutedOutput() {
    --mutedOutputs;
}

void MutedOutput::prepare() {
    // It is never destroyed, because a thread may still print when the program ends.
    [[maybe_unused]] static const MutableBuffer& buffer = *std::make_unique<MutableBuffer>().release();
}

} // namespace glimra::keyboards
