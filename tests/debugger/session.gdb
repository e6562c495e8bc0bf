set width 0
set confirm off
# Before the first line nothing has been constructed: what is shown of it means nothing, but it is shown.
break main
run
info locals
break look
continue
up
echo == What follows is compared\n
print bytes
print words
print shorts
print integers
print floats
print wrapped
print same
print reference
print *pointer
print empty
print freed
print buffer
print no_buffer
print pair
zorvan-write bytes bytes.pgm
zorvan-write reference bytes.png
zorvan-write pointer bytes_again.png
zorvan-write words words.pgm
zorvan-write words words.png
zorvan-write floats floats.png
zorvan-write pair.first first.PGM
python
for arguments in ("empty a.png", "freed a.png", "buffer a.png", "bytes a.jpg", "bytes", "nothing a.png",
                  "bytes missing/a.png"):
    try:
        gdb.execute("zorvan-write " + arguments)
    except gdb.error as error:
        print(error)
end
kill
