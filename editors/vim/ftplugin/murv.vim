" Vim filetype plugin file
" Language: murv documents and layouts
if exists('b:did_ftplugin')
  finish
endif
let b:did_ftplugin = 1

setlocal comments=s1:/*,mb:*,ex:*/,:// commentstring=//\ %s
let b:undo_ftplugin = 'setlocal comments< commentstring<'
