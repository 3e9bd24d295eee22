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
  cbz x0, 1f
  stp x29, x30, [sp, #-224]!
  .cfi_def_cfa_offset 224
  .cfi_offset x29, -224
  .cfi_offset x30, -216
  mov x29, sp
  stp x0, x1, [sp, #16]
  stp x2, x3, [sp, #32]
  stp x4, x5, [sp, #48]
  stp x6, x7, [sp, #64]
  str x8, [sp, #80]
  stp q0, q1, [sp, #96]
  stp q2, q3, [sp, #128]
  stp q4, q5, [sp, #160]
  stp q6, q7, [sp, #192]
  bl \lookup
  mov x16, x0
  ldp x0, x1, [sp, #16]
  ldp x2, x3, [sp, #32]
  ldp x4, x5, [sp, #48]
  ldp x6, x7, [sp, #64]
  ldr x8, [sp, #80]
  ldp q0, q1, [sp, #96]
  ldp q2, q3, [sp, #128]
  ldp q4, q5, [sp, #160]
  ldp q6, q7, [sp, #192]
  ldp x29, x30, [sp], #224
  .cfi_def_cfa_offset 0
  .cfi_restore x29
  .cfi_restore x30
  br x16
1:
  mov x1, #0
  movi d0, #0
  movi d1, #0
  movi d2, #0
  movi d3, #0
  ret
  .cfi_endproc
  .size \name, .-\name
  .endm

// Sends a message.
  jumps objc_msgSend, objc_msg_lookup
// What the platform's _objc_msgForward does: the receiver gets an invocation, or refuses.
  jumps zib_forward, zib_forwarder_of

// The address of a thread-local variable. Callers believe every register unchanged but x0, x16, x17
// and the link register.
  .globl _tlv_bootstrap
  .hidden _tlv_bootstrap
  .type _tlv_bootstrap, @function
_tlv_bootstrap:
  .cfi_startproc
  sub sp, sp, #656
  .cfi_def_cfa_offset 656
  stp x29, x30, [sp]
  .cfi_offset x29, -656
  .cfi_offset x30, -648
  mov x29, sp
  .irp n, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
  str x\n, [sp, #(16 + 8 * \n)]
  .endr
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31
  str q\n, [sp, #(144 + 16 * \n)]
  .endr
  bl zib_thread_local_address
  .irp n, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
  ldr x\n, [sp, #(16 + 8 * \n)]
  .endr
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31
  ldr q\n, [sp, #(144 + 16 * \n)]
  .endr
  ldp x29, x30, [sp]
  add sp, sp, #656
  .cfi_def_cfa_offset 0
  .cfi_restore x29
  .cfi_restore x30
  ret
  .cfi_endproc
  .size _tlv_bootstrap, .-_tlv_bootstrap

// Functions with variable arguments: CLibrary.cpp gets where these begin, as one more argument.
  .macro variadic name, next
  .globl zib_shim_\name
  .hidden zib_shim_\name
  .type zib_shim_\name, @function
zib_shim_\name:
  .cfi_startproc
  mov \next, sp
  b zib_\name\()_from
  .cfi_endproc
  .size zib_shim_\name, .-zib_shim_\name
  .endm

  variadic fprintf, x2
  variadic snprintf, x3

  .section .note.GNU-stack, "", @progbits
