/t
cd /tmp/kirrel-fuzz-batch/Temp Files
"/tmp/kirrel-fuzz-batch/App/convert.exe" -delay 4 temp?.bmp temp??.bmp temp???.bmp -adjoin -loop 0 "/tmp/kirrel-fuzz-batch/Out & Back; $(x).gif"

del temp*.bmp

del GifConvert.bat

