" Vim syntax file
" Language: murv documents and layouts
if exists('b:current_syntax')
  finish
endif
let s:options = &cpoptions
set cpoptions&vim

syntax region murvComment start=+//+ end=+$+
syntax region murvComment start=+/\*+ end=+\*/+

syntax match murvNumber +-\?\d\+\%(\.\d\+\)\?\%([eE][+-]\?\d\+\)\?+
syntax match murvId +#\s*\d\++
syntax match murvConstant +true\|false\|null+

syntax match murvBadEscape +\\.+ contained
syntax match murvEscape +\\\%(["\\/btnfr]\|x\x\{2}\|u\x\{4}\)+ contained
syntax region murvString start=+"+ skip=+\\.+ end=+"+ contains=murvBadEscape,murvEscape
syntax match murvName +"\%([^"\\]\|\\.\)*"\ze\s*=+ contains=murvBadEscape,murvEscape

" A packet expression: form, length, calibration, keyword; after a blank, a remark.
syntax region murvPacket matchgroup=murvParenthesis start=+(+ end=+)+ contains=murvForm,murvRemark
syntax match murvForm +(\@1<=[AB][CN][FVD]+ contained nextgroup=murvLength
syntax match murvLength +\d\+\%([+-]\d\+\)\?+ contained nextgroup=murvKeyword
syntax match murvKeyword +[A-Za-z][A-Za-z0-9]*\%(_\d*\)\?+ contained
syntax match murvRemark +\s[^)]*+ contained

" Rules of layouts: texts whose names begin with @.
syntax match murvRuleName +"@\%([^"\\]\|\\.\)*"\ze\s*=+ nextgroup=murvRuleEquals skipwhite skipempty
syntax match murvRuleEquals +=+ contained nextgroup=murvRules skipwhite skipempty
syntax region murvRules start=+"+ skip=+\\.+ end=+"+ contained
      \ contains=murvRule,murvRuleWord,murvRuleMark,murvRuleNumber,murvRuleForm
syntax match murvRuleWord +\<\%(of\|by\|else\|from\|lower\)\>+ contained
syntax match murvRuleNumber +[A-Za-z0-9_.]\@1<!-\?\d\+\%(\.\d\+\)\?\>+ contained
syntax match murvRuleForm +\<[AB][CN][FVD]\d\+\%([+-]\d\+\)\?+ contained
syntax region murvRuleMark start=+\\"+ end=+\\"+ contained
let s:rules = [
      \ 'layout', 'lines', 'fixed', 'prefixed', 'one of by', 'one of', 'if', 'optional', 'like', 'size of',
      \ 'count of', 'bits of', 'bits', 'sum of', 'records of', 'crc16', 'crc32', 'inet', 'xor', 'sum8', 'sum32',
      \ 'luhn', 'mod10', 'mod97', 'ends', 'before', 'between', 'until', 'to end', 'align', 'required', 'valid',
      \ 'mask', 'little', 'big', 'ascii', 'cp037', 'cp500', 'cp1047', 'latin1', 'raw', 'signed', 'float',
      \ 'decimals', 'octal', 'hex', 'packed', 'bcd', 'zoned', 'trailing sign', 'exact', 'blank is null',
      \ 'zero is null', 'pad blank', 'pad zero', 'left', 'right', 'keep']
" A rule begins the text or a line of it, or follows a semicolon.
execute 'syntax match murvRule +\%(^\s*\|"\|;\s*\)\@<=\%(' . join(s:rules, '\|') . '\)\>+ contained'
unlet s:rules

highlight default link murvComment Comment
highlight default link murvNumber Number
highlight default link murvId Label
highlight default link murvConstant Constant
highlight default link murvBadEscape Error
highlight default link murvEscape SpecialChar
highlight default link murvString String
highlight default link murvName Identifier
highlight default link murvPacket Error
highlight default link murvParenthesis Delimiter
highlight default link murvForm Type
highlight default link murvLength Number
highlight default link murvKeyword Function
highlight default link murvRemark Comment
highlight default link murvRuleName PreProc
highlight default link murvRules String
highlight default link murvRule Statement
highlight default link murvRuleWord Operator
highlight default link murvRuleMark SpecialChar
highlight default link murvRuleNumber Number
highlight default link murvRuleForm Type

let b:current_syntax = 'murv'
let &cpoptions = s:options
unlet s:options
