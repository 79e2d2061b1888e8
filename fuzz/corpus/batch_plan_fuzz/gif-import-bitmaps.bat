"/tmp/kirrel-fuzz-batch/App/convert.exe" "/tmp/kirrel-fuzz-batch/Temp Files/gif_frame-0.png" -compress none "/tmp/kirrel-fuzz-batch/Temp Files/gif_frame-0.bmp"
del "/tmp/kirrel-fuzz-batch/Temp Files/gif_frame-0.png"

"/tmp/kirrel-fuzz-batch/App/convert.exe" "/tmp/kirrel-fuzz-batch/Temp Files/gif_frame-1.png" -compress none "/tmp/kirrel-fuzz-batch/Temp Files/gif_frame-1.bmp"
del "/tmp/kirrel-fuzz-batch/Temp Files/gif_frame-1.png"

del "/tmp/kirrel-fuzz-batch/Temp Files/GifImport02.bat"

