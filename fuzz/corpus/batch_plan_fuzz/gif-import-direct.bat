"/tmp/kirrel-fuzz-batch/App/convert.exe"  -coalesce +repage +adjoin -depth 24 "/tmp/kirrel-fuzz-batch/Out & Back; $(x).gif" "/tmp/kirrel-fuzz-batch/Temp Files/gif_frame.gif"

del "/tmp/kirrel-fuzz-batch/Temp Files/GifImport01.bat"

