autocmd BufNewFile,BufRead *.murv,*.layout setfiletype murv
