"/tmp/kirrel-fuzz-batch/App/convert.exe"  -coalesce "/tmp/kirrel-fuzz-batch/Out & Back; $(x).gif" "/tmp/kirrel-fuzz-batch/Temp Files/temp_anim.gif"
"/tmp/kirrel-fuzz-batch/App/convert.exe"  +repage +adjoin "/tmp/kirrel-fuzz-batch/Temp Files/temp_anim.gif" png24:"/tmp/kirrel-fuzz-batch/Temp Files/gif_frame.png"

del "/tmp/kirrel-fuzz-batch/Temp Files/temp_anim.gif"
del "/tmp/kirrel-fuzz-batch/Temp Files/GifImport01.bat"

