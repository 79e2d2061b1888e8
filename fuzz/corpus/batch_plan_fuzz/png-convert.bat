"/tmp/kirrel-fuzz-batch/App/convert.exe" png_main.bmp png_mask.bmp -compose copyopacity -composite "/tmp/kirrel-fuzz-batch/Out & Back; $(x).gif"

del png_main.bmp

del png_mask.bmp

del PNGConvert.bat

