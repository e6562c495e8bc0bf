#include "png_file.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace Examples {
namespace {

// A header can announce far more pixels than its file contains. Larger pictures are refused before memory is
// allocated for them.
constexpr long long maxPixels = 100'000'000;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw std::runtime_error(path + ": " + reason);
}

File openFile(const std::string& path, const char* mode) {
  File file(std::fopen(path.c_str(), mode));
  if (!file) fail(path, std::strerror(errno));
  return file;
}

// The codec reports an error by a longjmp into the function that called it. So the functions with a setjmp
// own nothing that needs a destructor; their callers do.
struct Message {
  char text[200] = "";
};

void keepMessage(png_structp png, png_const_charp text) {
  auto* message = static_cast<Message*>(png_get_error_ptr(png));
  std::snprintf(message->text, sizeof message->text, "%s", text);
  png_longjmp(png, 1);
}

// Warnings do not concern the pixels.
void ignoreWarning(png_structp, png_const_charp) {}

struct Reader {
  Message message;
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &message, keepMessage, ignoreWarning);
  png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
  Reader() = default;
  Reader(const Reader&) = delete;
  ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
};

struct Writer {
  Message message;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &message, keepMessage, ignoreWarning);
  png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
  Writer() = default;
  Writer(const Writer&) = delete;
  ~Writer() { png_destroy_write_struct(&png, &info); }
};

bool readHeader(Reader& reader, std::FILE* file) {
  if (setjmp(png_jmpbuf(reader.png)) != 0) return false;
  png_init_io(reader.png, file);
  png_read_info(reader.png, reader.info);
  return true;
}

bool readPixels(Reader& reader, png_bytepp rows) {
  if (setjmp(png_jmpbuf(reader.png)) != 0) return false;
  png_set_interlace_handling(reader.png);
  png_read_update_info(reader.png, reader.info);
  png_read_image(reader.png, rows);
  png_read_end(reader.png, nullptr);
  return true;
}

bool writeAll(Writer& writer, std::FILE* file, Zorvan::Size size, png_bytepp rows) {
  if (setjmp(png_jmpbuf(writer.png)) != 0) return false;
  png_init_io(writer.png, file);
  png_set_IHDR(writer.png, writer.info, static_cast<png_uint_32>(size.width),
               static_cast<png_uint_32>(size.height), 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  // Higher levels take several times as long for a few percent.
  png_set_compression_level(writer.png, 6);
  png_set_rows(writer.png, writer.info, rows);
  png_write_png(writer.png, writer.info, PNG_TRANSFORM_IDENTITY, nullptr);
  return true;
}

std::vector<png_bytep> rowsOf(Zorvan::u8* pixels, int width, int height) {
  std::vector<png_bytep> rows;
  for (long long r = 0; r < height; ++r) rows.push_back(pixels + r * width);
  return rows;
}

void requireGrey8(const std::string& path, Reader& reader) {
  const int colour = png_get_color_type(reader.png, reader.info);
  const int depth = png_get_bit_depth(reader.png, reader.info);
  if (colour != PNG_COLOR_TYPE_GRAY)
    fail(path, "has colours or an alpha channel; an 8-bit grey PNG is needed");
  if (depth != 8) fail(path, "has " + std::to_string(depth) + " bits per pixel; an 8-bit grey PNG is needed");
}

}  // namespace

Picture readPng(const std::string& path) {
  const File file = openFile(path, "rb");
  png_byte signature[8] = {};
  const std::size_t bytes = std::fread(signature, 1, sizeof signature, file.get());
  // A folder can be opened like a file, but not read.
  if (std::ferror(file.get()) != 0) fail(path, std::strerror(errno));
  if (bytes != sizeof signature || png_sig_cmp(signature, 0, sizeof signature) != 0) {
    fail(path, "is not a PNG");
  }
  std::rewind(file.get());

  Reader reader;
  if (reader.info == nullptr) fail(path, "no memory for the PNG reader");
  if (!readHeader(reader, file.get())) fail(path, std::string("damaged PNG: ") + reader.message.text);
  requireGrey8(path, reader);

  Picture picture;
  picture.width = static_cast<int>(png_get_image_width(reader.png, reader.info));
  picture.height = static_cast<int>(png_get_image_height(reader.png, reader.info));
  const long long count = static_cast<long long>(picture.width) * picture.height;
  if (count > maxPixels) fail(path, "has more than " + std::to_string(maxPixels) + " pixels");
  picture.pixels.resize(static_cast<std::size_t>(count));
  std::vector<png_bytep> rows = rowsOf(picture.pixels.data(), picture.width, picture.height);
  if (!readPixels(reader, rows.data())) fail(path, std::string("damaged PNG: ") + reader.message.text);
  return picture;
}

void writePng(const std::string& path, const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& image) {
  File file = openFile(path, "wb");
  Writer writer;
  if (writer.info == nullptr) fail(path, "no memory for the PNG writer");
  std::vector<png_bytep> rows = rowsOf(image.buffer().get(), image.width(), image.height());
  if (!writeAll(writer, file.get(), image.size(), rows.data())) {
    fail(path, std::string("cannot be written: ") + writer.message.text);
  }
  // A full disk may be reported no earlier than here.
  if (std::fclose(file.release()) != 0) fail(path, std::string("cannot be written: ") + std::strerror(errno));
}

}  // namespace Examples
