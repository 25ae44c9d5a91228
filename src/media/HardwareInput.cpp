#include "media/HardwareInput.h"

#include "media/FFmpeg.h"

#include <cstring>

extern "C" {
#include <libavutil/hwcontext.h>
}

namespace pointloom::media {

namespace {

void copyRows(const AVFrame& from, AVFrame& to) {
    const int bytes = from.width * (to.format == AV_PIX_FMT_P010LE ? 2 : 1);
    for (int y = 0; y < from.height; ++y)
        std::memcpy(to.data[0] + y * to.linesize[0], from.data[0] + y * from.linesize[0],
                    static_cast<std::size_t>(bytes));
}

template <class Sample>
void interleaveColors(const AVFrame& from, AVFrame& to) {
    for (int y = 0; y < from.height / 2; ++y) {
        const auto* cb = reinterpret_cast<const Sample*>(from.data[1] + y * from.linesize[1]);
        const auto* cr = reinterpret_cast<const Sample*>(from.data[2] + y * from.linesize[2]);
        auto* pairs = reinterpret_cast<Sample*>(to.data[1] + y * to.linesize[1]);
        for (int x = 0; x < from.width / 2; ++x) {
            pairs[2 * x] = cb[x];
            pairs[2 * x + 1] = cr[x];
        }
    }
}

// P010 has its ten bits above six empty ones.
void raiseSamples(AVFrame& frame) {
    for (int plane = 0; plane < 2; ++plane) {
        const int rows = plane == 0 ? frame.height : frame.height / 2;
        for (int y = 0; y < rows; ++y) {
            auto* row = reinterpret_cast<std::uint16_t*>(frame.data[plane] + y * frame.linesize[plane]);
            for (int x = 0; x < frame.width; ++x)
                row[x] = static_cast<std::uint16_t>(row[x] << 6U);
        }
    }
}

}

AVFramePtr interleaved(const AVFrame& frame) {
    const bool isTenBit = frame.format == AV_PIX_FMT_YUV420P10LE;
    if (!isTenBit && frame.format != AV_PIX_FMT_YUV420P)
        throw MediaError("encoders in hardware cannot take this sample layout");
    AVFramePtr result = makeFrame();
    result->format = isTenBit ? AV_PIX_FMT_P010LE : AV_PIX_FMT_NV12;
    result->width = frame.width;
    result->height = frame.height;
    check(av_frame_get_buffer(result.get(), 0), "there is no memory for a picture");
    check(av_frame_copy_props(result.get(), &frame), "a picture could not be copied");
    copyRows(frame, *result);
    if (isTenBit) {
        interleaveColors<std::uint16_t>(frame, *result);
        raiseSamples(*result);
    } else {
        interleaveColors<std::uint8_t>(frame, *result);
    }
    return result;
}

HardwareInput::HardwareInput(AVCodecContext& encoder, const VideoSettings& settings)
    : m_layout(settings.format.bitDepth > 8 ? AV_PIX_FMT_P010LE : AV_PIX_FMT_NV12) {
    encoder.pix_fmt = m_layout;
    if (settings.encoder == EncoderKind::vaapi)
        allocateSurfaces(encoder);
}

void HardwareInput::allocateSurfaces(AVCodecContext& encoder) {
    constexpr int frames = 20; // more than the encoder holds at a time
    AVBufferRef* device = nullptr;
    check(av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0),
          "there is no such device");
    const BufferPtr owner(device);
    m_surfaces.reset(allocated(av_hwframe_ctx_alloc(device)));
    auto& surfaces = *reinterpret_cast<AVHWFramesContext*>(m_surfaces->data);
    surfaces.format = AV_PIX_FMT_VAAPI;
    surfaces.sw_format = m_layout;
    surfaces.width = encoder.width;
    surfaces.height = encoder.height;
    surfaces.initial_pool_size = frames;
    check(av_hwframe_ctx_init(m_surfaces.get()), "the device has no memory for such pictures");
    encoder.pix_fmt = AV_PIX_FMT_VAAPI;
    encoder.hw_frames_ctx = allocated(av_buffer_ref(m_surfaces.get()));
}

AVFramePtr HardwareInput::convert(const AVFrame& frame) const {
    AVFramePtr result = interleaved(frame);
    return m_surfaces ? uploaded(*result) : std::move(result);
}

AVFramePtr HardwareInput::uploaded(const AVFrame& frame) const {
    AVFramePtr surface = makeFrame();
    check(av_hwframe_get_buffer(m_surfaces.get(), surface.get(), 0),
          "the device has no memory for a picture");
    check(av_hwframe_transfer_data(surface.get(), &frame, 0), "a picture could not be sent to the device");
    check(av_frame_copy_props(surface.get(), &frame), "a picture could not be copied");
    return surface;
}

}
