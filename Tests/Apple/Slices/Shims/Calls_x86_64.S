// What is called with registers that a function in C++ would not leave alone.

  .text

// Jumps to what `lookup` finds for a receiver and a selector, with every argument as it came. Nothing
// answers with zeros.
  .macro jumps name, lookup
  .globl \name
  .hidden \name
  .type \name, @function
\name:
  .cfi_startproc
  testq %rdi, %rdi
  je 1f
  pushq %rbp
  .cfi_def_cfa_offset 16
  .cfi_offset %rbp, -16
  movq %rsp, %rbp
  .cfi_def_cfa_register %rbp
  subq $192, %rsp
  andq $-16, %rsp
  movq %rdi, (%rsp)
  movq %rsi, 8(%rsp)
  movq %rdx, 16(%rsp)
  movq %rcx, 24(%rsp)
  movq %r8, 32(%rsp)
  movq %r9, 40(%rsp)
  movq %rax, 48(%rsp)
  .irp n, 0, 1, 2, 3, 4, 5, 6, 7
  movaps %xmm\n, (64 + 16 * \n)(%rsp)
  .endr
  callq \lookup@PLT
  movq %rax, %r11
  movq (%rsp), %rdi
  movq 8(%rsp), %rsi
  movq 16(%rsp), %rdx
  movq 24(%rsp), %rcx
  movq 32(%rsp), %r8
  movq 40(%rsp), %r9
  movq 48(%rsp), %rax
  .irp n, 0, 1, 2, 3, 4, 5, 6, 7
  movaps (64 + 16 * \n)(%rsp), %xmm\n
  .endr
  movq %rbp, %rsp
  popq %rbp
  .cfi_def_cfa %rsp, 8
  .cfi_restore %rbp
  jmpq *%r11
1:
  xorl %eax, %eax
  xorl %edx, %edx
  xorps %xmm0, %xmm0
  xorps %xmm1, %xmm1
  retq
  .cfi_endproc
  .size \name, .-\name
  .endm

// Sends a message.
  jumps objc_msgSend, objc_msg_lookup
// What the platform's _objc_msgForward does: the receiver gets an invocation, or refuses.
  jumps zib_forward, zib_forwarder_of

// The address of a thread-local variable. Callers believe every register unchanged but %rax and
// %rdi.
  .globl _tlv_bootstrap
  .hidden _tlv_bootstrap
  .type _tlv_bootstrap, @function
_tlv_bootstrap:
  .cfi_startproc
  pushq %rbp
  .cfi_def_cfa_offset 16
  .cfi_offset %rbp, -16
  movq %rsp, %rbp
  .cfi_def_cfa_register %rbp
  subq $320, %rsp
  andq $-16, %rsp
  movq %rcx, (%rsp)
  movq %rdx, 8(%rsp)
  movq %rsi, 16(%rsp)
  movq %r8, 24(%rsp)
  movq %r9, 32(%rsp)
  movq %r10, 40(%rsp)
  movq %r11, 48(%rsp)
  .irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
  movaps %xmm\n, (64 + 16 * \n)(%rsp)
  .endr
  callq zib_thread_local_address
  movq (%rsp), %rcx
  movq 8(%rsp), %rdx
  movq 16(%rsp), %rsi
  movq 24(%rsp), %r8
  movq 32(%rsp), %r9
  movq 40(%rsp), %r10
  movq 48(%rsp), %r11
  .irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
  movaps (64 + 16 * \n)(%rsp), %xmm\n
  .endr
  movq %rbp, %rsp
  popq %rbp
  .cfi_def_cfa %rsp, 8
  .cfi_restore %rbp
  retq
  .cfi_endproc
  .size _tlv_bootstrap, .-_tlv_bootstrap

  .section .note.GNU-stack, "", @progbits
