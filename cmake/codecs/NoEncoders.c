// Stands in for the encoders of codecs that the products only read; each says that it failed, which libtiff reports.
// Only the bound of sizes is asked for when something is read, too.
// kw_without_encoders lists these functions to the linker, so that the encoders themselves stay out.
#include <Lerc_c_api.h>
#include <lzma.h>
#include <stddef.h>
#include <webp/encode.h>
#include <zstd.h>

#define KW_WITHOUT(type, name, parameters, failure) \
  type __wrap_##name parameters;                    \
  type __wrap_##name parameters { return failure; }

static const size_t NoSize = (size_t)-1;

KW_WITHOUT(lerc_status, lerc_encodeForVersion,
           (const void* data, int version, unsigned type, int depth, int columns, int rows, int bands, int masks,
            const unsigned char* valid, double error, unsigned char* buffer, unsigned size, unsigned* written),
           1)
KW_WITHOUT(lzma_ret, lzma_stream_encoder, (lzma_stream * stream, const lzma_filter* filters, lzma_check check),
           LZMA_OPTIONS_ERROR)
KW_WITHOUT(int, WebPConfigInitInternal, (WebPConfig * config, WebPPreset preset, float quality, int version), 0)
KW_WITHOUT(int, WebPValidateConfig, (const WebPConfig* config), 0)
KW_WITHOUT(int, WebPPictureInitInternal, (WebPPicture * picture, int version), 0)
KW_WITHOUT(int, WebPPictureImportRGB, (WebPPicture * picture, const uint8_t* pixels, int stride), 0)
KW_WITHOUT(int, WebPPictureImportRGBA, (WebPPicture * picture, const uint8_t* pixels, int stride), 0)
KW_WITHOUT(void, WebPPictureFree, (WebPPicture * picture), )
KW_WITHOUT(int, WebPEncode, (const WebPConfig* config, WebPPicture* picture), 0)
KW_WITHOUT(size_t, ZSTD_compress, (void* out, size_t room, const void* in, size_t size, int level), NoSize)
KW_WITHOUT(size_t, ZSTD_compressBound, (size_t size), ZSTD_COMPRESSBOUND(size))
KW_WITHOUT(int, ZSTD_maxCLevel, (void), 0)
KW_WITHOUT(ZSTD_CStream*, ZSTD_createCStream, (void), NULL)
KW_WITHOUT(size_t, ZSTD_initCStream, (ZSTD_CStream * stream, int level), NoSize)
KW_WITHOUT(size_t, ZSTD_compressStream, (ZSTD_CStream * stream, ZSTD_outBuffer* out, ZSTD_inBuffer* in), NoSize)
KW_WITHOUT(size_t, ZSTD_endStream, (ZSTD_CStream * stream, ZSTD_outBuffer* out), NoSize)
KW_WITHOUT(size_t, ZSTD_freeCStream, (ZSTD_CStream * stream), 0)
