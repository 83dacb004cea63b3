#include <gtest/gtest.h>
#include <wincodec.h>

#include "com/com_ptr.h"
#include "platform/windows/wide_text.h"
#include "windows/component.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

// What the screen shows in the place of a window.
HBITMAP Photograph(HWND window) {
  const RECT place = PlaceOf(window);
  const int width = place.right - place.left;
  const int height = place.bottom - place.top;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width, height, screen, place.left, place.top, SRCCOPY);
  SelectObject(memory, before);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return bitmap;
}

bool Write(HBITMAP bitmap, const std::wstring& path) {
  using com::ComPtr;
  ComPtr<IWICImagingFactory> factory;
  ComPtr<IWICBitmap> source;
  ComPtr<IWICStream> stream;
  ComPtr<IWICBitmapEncoder> encoder;
  ComPtr<IWICBitmapFrameEncode> frame;
  if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                              __uuidof(IWICImagingFactory), factory.PutVoid()))) {
    return false;
  }
  factory->CreateBitmapFromHBITMAP(bitmap, nullptr, WICBitmapIgnoreAlpha, source.Put());
  factory->CreateStream(stream.Put());
  stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE);
  factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.Put());
  encoder->Initialize(stream.get(), WICBitmapEncoderNoCache);
  encoder->CreateNewFrame(frame.Put(), nullptr);
  frame->Initialize(nullptr);
  return SUCCEEDED(frame->WriteSource(source.get(), nullptr)) && SUCCEEDED(frame->Commit()) &&
         SUCCEEDED(encoder->Commit());
}

}  // namespace

void SavePicture(HWND window, const std::string& name) {
  const std::string file = name + "-" + std::to_string(SystemResolution()) + ".png";
  const std::wstring folder = com::NativePath(TESSARY_PICTURES);
  CreateDirectoryW(folder.c_str(), nullptr);
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  Sleep(100);  // until the screen shows it
  const HBITMAP bitmap = Photograph(window);
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  EXPECT_TRUE(Write(bitmap, folder + L"\\" + WideFromUtf8(file))) << file;
  CoUninitialize();
  DeleteObject(bitmap);
}

}  // namespace tessary::win32
