"/tmp/kirrel-fuzz-batch/App/convert.exe " "/tmp/kirrel-fuzz-batch/Temp Files/temp0.bmp" -background rgb(1,2,3)  -transparent rgb(1,2,3) "/tmp/kirrel-fuzz-batch/Temp Files/temp0.gif"

"/tmp/kirrel-fuzz-batch/App/convert.exe" -dispose previous -delay 4 -loop 0 +page "/tmp/kirrel-fuzz-batch/Temp Files/temp0.gif" "/tmp/kirrel-fuzz-batch/Out & Back; $(x).gif"

"/tmp/kirrel-fuzz-batch/App/convert.exe " "/tmp/kirrel-fuzz-batch/Temp Files/temp1.bmp" "/tmp/kirrel-fuzz-batch/Temp Files/temp1.gif"

"/tmp/kirrel-fuzz-batch/App/convert.exe" -dispose previous "/tmp/kirrel-fuzz-batch/Out & Back; $(x).gif" -delay 4 -loop 0 +page "/tmp/kirrel-fuzz-batch/Temp Files/temp1.gif" "/tmp/kirrel-fuzz-batch/Out & Back; $(x).gif"

cd /tmp/kirrel-fuzz-batch/Temp Files

del temp*.gif

del temp*.bmp

del GifConvert.bat

